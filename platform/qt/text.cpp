#include "platform/qt/text.h"

#include <QStringDecoder>
#include <array>

namespace velmora::qt {
namespace {

// 0x80 to 0x9F; a code that is not assigned stays the control character it is, and is not shown.
constexpr std::array<char16_t, 32> windows1252{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

struct Decoded {
    QString text;
    bool utf8;
};

Decoded decode(std::string_view bytes) {
    // Stateless: a sequence cut at the end is an error, and does not vanish.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    QString text = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (!decoder.hasError()) return {std::move(text), true};
    text.resize(0);
    text.reserve(static_cast<qsizetype>(bytes.size()));
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text.append(QChar(code >= 0x80 && code < 0xA0 ? windows1252[code - 0x80U] : char16_t(code)));
    }
    return {std::move(text), false};
}

// Whether the unit is part of what is shown: of CR LF only the LF is.
bool isShown(const QString& text, qsizetype at) {
    const QChar unit = text[at];
    if (unit == u'\r') return at + 1 == text.size() || text[at + 1] != u'\n';
    return unit == u'\n' || unit == u'\t' || unit.category() != QChar::Other_Control;
}

std::size_t bytesOf(QChar unit, bool utf8) {
    if (!utf8 || unit.unicode() < 0x80) return 1;
    if (unit.isSurrogate()) return 2;
    return unit.unicode() < 0x800 ? 2 : 3;
}

}  // namespace

QString shown(std::string_view bytes) {
    const QString text = decode(bytes).text;
    QString result;
    result.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (isShown(text, at)) result.append(text[at] == u'\r' ? QChar(u'\n') : text[at]);
    }
    return result;
}

std::string typedBytes(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

int shownOffset(std::string_view bytes, std::size_t offset) {
    const auto [text, utf8] = decode(bytes);
    int position = 0;
    std::size_t end = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool pair = text[at].isHighSurrogate();
        end += bytesOf(text[at], utf8) * (pair ? 2 : 1);
        if (end > offset) break;
        position += pair ? 2 : isShown(text, at) ? 1 : 0;
        at += pair ? 1 : 0;
    }
    return position;
}

std::size_t byteOffset(std::string_view bytes, int position) {
    const auto [text, utf8] = decode(bytes);
    std::size_t offset = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (isShown(text, at) && position-- == 0) return offset;
        offset += bytesOf(text[at], utf8);
    }
    return bytes.size();
}

}  // namespace velmora::qt
