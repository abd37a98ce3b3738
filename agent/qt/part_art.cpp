#include "agent/qt/part_art.h"

#include <QPainter>
#include <QTransform>
#include <algorithm>
#include <cmath>
#include <set>

namespace agent {
namespace {

QTransform toQt(const Affine& t) {
    return {t.a, t.b, t.c, t.d, t.e, t.f};
}

QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Beyond these, a transformation shows nothing that could be seen, and pictures would fill the memory.
constexpr double farthest = 1e5;
constexpr double farthestPart = 4;  // times the figure's size from its corner
constexpr double mostArea = 32;     // of all drawings together, in figures

bool isSane(const Affine& t) {
    const auto sane = [](double value) { return std::abs(value) < farthest; };
    return sane(t.a) && sane(t.b) && sane(t.c) && sane(t.d) && sane(t.e) && sane(t.f);
}

QRectF boundsOf(const QSvgRenderer& svg, const QString& id) {
    return svg.transformForElement(id).mapRect(svg.boundsOnElement(id));
}

// Why the drawings can't be those of a figure of this size; empty if they can.
std::string excess(const QSvgRenderer& svg, const Rig& rig) {
    const double reach = farthestPart * std::max(rig.width, rig.height);
    const QRectF around(-reach, -reach, 2 * reach, 2 * reach);
    std::set<std::string_view> seen;
    double area = 0;
    for (const Bone& bone : rig.bones) {
        for (const Slot& slot : bone.slots) {
            if (slot.art.empty() || !seen.insert(slot.art).second) continue;
            const QRectF bounds = boundsOf(svg, toQt(slot.art));
            if (!around.contains(bounds) && !bounds.isEmpty())
                return "the part \"" + slot.art + "\" of its art reaches far beyond the figure";
            area += bounds.width() * bounds.height();
        }
    }
    return area > mostArea * rig.width * rig.height ? "the parts of its art are too large" : "";
}

}  // namespace

std::unique_ptr<PartArt> PartArt::load(const QByteArray& svg, const Rig& rig, std::string& reason) {
    auto art = std::make_unique<PartArt>();
    if (!art->svg_.load(svg)) {
        reason = "its art is no SVG document";
        return nullptr;
    }
    for (const Bone& bone : rig.bones) {
        for (const Slot& slot : bone.slots) {
            if (slot.art.empty() || art->svg_.elementExists(toQt(slot.art))) continue;
            reason = "its art has no part \"" + slot.art + "\"";
            return nullptr;
        }
    }
    reason = excess(art->svg_, rig);
    if (!reason.empty()) return nullptr;
    return art;
}

QImage PartArt::paint(const Rig& rig, const Pose& pose, double scale) {
    if (scale != scale_) parts_.clear();
    scale_ = scale;
    QImage canvas(static_cast<int>(std::ceil(rig.width * scale)),
                  static_cast<int>(std::ceil(rig.height * scale)), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const PlacedPart& placed : placeParts(rig, pose)) {
        if (!isSane(placed.transform)) continue;
        const Part& drawn = part(placed.art, rig);
        painter.setTransform(toQt(placed.transform) * QTransform::fromScale(scale, scale));
        painter.setOpacity(placed.alpha);
        painter.drawImage(drawn.bounds, drawn.image);
    }
    return canvas;
}

const PartArt::Part& PartArt::part(std::string_view art, const Rig& rig) {
    const auto [entry, isNew] = parts_.try_emplace(std::string(art));
    Part& drawn = entry->second;
    if (!isNew) return drawn;
    const QString id = toQt(art);
    const QRectF figure(0, 0, rig.width, rig.height);
    // Art far outside the figure is never seen, and must not cost memory.
    const QRectF seen = figure.adjusted(-rig.width, -rig.height, rig.width, rig.height);
    const QRectF whole = boundsOf(svg_, id);
    const QRectF bounds = whole.intersected(seen);
    if (bounds.isEmpty()) return drawn;
    // Whole device pixels and a clear edge around, so that an unturned part is copied sharp.
    const QRect pixels =
        QRectF(bounds.topLeft() * scale_, bounds.size() * scale_).toAlignedRect().adjusted(-1, -1, 1, 1);
    drawn.bounds = QRectF(QPointF(pixels.topLeft()) / scale_, QSizeF(pixels.size()) / scale_);
    drawn.image = QImage(pixels.size(), QImage::Format_ARGB32_Premultiplied);
    drawn.image.fill(Qt::transparent);
    QPainter painter(&drawn.image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-pixels.topLeft());
    painter.scale(scale_, scale_);
    svg_.render(&painter, id, whole);
    return drawn;
}

}  // namespace agent
