#include "agent/qt/art_guard.h"

#include <QRegularExpression>
#include <QXmlStreamReader>
#include <algorithm>
#include <array>
#include <span>

#include "agent/qt/rig_reader.h"

namespace agent {
namespace {

constexpr qsizetype largestArt = 1'000'000;
constexpr int mostElements = 10'000;
constexpr int deepest = 64;
constexpr int mostStops = 64;  // of one gradient: their memory grows with the square of their number

// What a figure is drawn with.
constexpr std::array<QStringView, 17> drawing = {
    u"svg",     u"g",    u"defs",     u"path",       u"rect",           u"circle",
    u"ellipse", u"line", u"polygon",  u"polyline",   u"linearGradient", u"stop",
    u"title",   u"desc", u"metadata", u"solidColor", u"radialGradient"};

// The rest of SVG, by which the renderer knows an element in any namespace.
constexpr std::array<QStringView, 24> refused = {
    u"use",   u"image",         u"text",          u"tspan",     u"textArea",         u"tbreak",
    u"style", u"switch",        u"symbol",        u"pattern",   u"animate",          u"animation",
    u"set",   u"animateColor",  u"animateMotion", u"script",    u"animateTransform", u"audio",
    u"video", u"foreignObject", u"font",          u"font-face", u"clipPath",         u"filter"};

bool isIn(std::span<const QStringView> names, QStringView name) {
    return std::ranges::find(names, name) != names.end();
}

[[noreturn]] void fail(const QXmlStreamReader& reader, const QString& what) {
    throw BadPackage(QStringLiteral("line %1 %2").arg(reader.lineNumber()).arg(what));
}

// Whether an attribute asks for dashes: a dash far smaller than its line takes the renderer for ever.
bool asksForDashes(const QXmlStreamAttribute& attribute) {
    static const QRegularExpression dashes(QStringLiteral("stroke-dasharray(?!\\s*:\\s*none\\s*(;|$))"),
                                           QRegularExpression::CaseInsensitiveOption);
    if (attribute.name().compare(u"stroke-dasharray", Qt::CaseInsensitive) == 0)
        return attribute.value().trimmed() != u"none";
    return dashes.match(attribute.value().toString()).hasMatch();
}

void refuseElement(const QXmlStreamReader& reader) {
    const bool ours =
        reader.namespaceUri().isEmpty() || reader.namespaceUri() == u"http://www.w3.org/2000/svg";
    const bool fits = ours ? isIn(drawing, reader.name()) : !isIn(refused, reader.name());
    if (!fits) fail(reader, QStringLiteral("has a \"%1\" element").arg(reader.name()));
    for (const QXmlStreamAttribute& attribute : reader.attributes()) {
        if (asksForDashes(attribute)) fail(reader, QStringLiteral("has a dashed line"));
        if (attribute.name() == u"href" && !attribute.value().startsWith(u'#'))
            fail(reader, QStringLiteral("refers to something outside"));
    }
}

}  // namespace

void refuseUnfitArt(const QByteArray& art) {
    if (art.size() > largestArt) throw BadPackage(QStringLiteral("it is too large"));
    // Compressed art could unfold to any size.
    if (art.startsWith("\x1f\x8b")) throw BadPackage(QStringLiteral("it is compressed"));
    QXmlStreamReader reader(art);
    int elements = 0;
    int depth = 0;
    int stops = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
            case QXmlStreamReader::DTD:
                if (!reader.entityDeclarations().isEmpty()) fail(reader, QStringLiteral("declares entities"));
                break;
            case QXmlStreamReader::StartElement:
                if (++elements > mostElements) fail(reader, QStringLiteral("is one element too many"));
                if (++depth > deepest) fail(reader, QStringLiteral("is nested too deeply"));
                refuseElement(reader);
                stops = reader.name() == u"stop" ? stops + 1 : 0;
                if (stops > mostStops) fail(reader, QStringLiteral("is one stop of a gradient too many"));
                break;
            case QXmlStreamReader::EndElement:
                --depth;
                break;
            default:
                break;
        }
    }
    if (reader.hasError()) fail(reader, QStringLiteral("can't be read: %1").arg(reader.errorString()));
}

}  // namespace agent
