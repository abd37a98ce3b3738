#include "agent/workshop/contact_sheet.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "agent/animator.h"
#include "agent/workshop/animation_names.h"

namespace agent {
namespace {

constexpr int labelHeight = 16;
constexpr std::array<int, 4> sizes = {100, 128, 200, 400};
const QColor light(0xf2, 0xf2, 0xee);
const QColor dark(0x20, 0x24, 0x2c);

struct Cell {
    Pose pose;
    QString label;
};

QString toQt(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

class Sheet {
public:
    Sheet(const Rig& rig, PartArt& art, const SheetOptions& options)
        : rig_(rig), art_(art), options_(options) {}

    QImage make() {
        const auto cells = clipCells();
        const bool everything = options_.clips.empty();
        const int height = everything ? sizes.back() + labelHeight : 0;
        const int rows = rowsFor(cells.size()) + (everything ? 2 * rowsFor(mouthShapes().size()) : 0);
        const int sizesWidth = 2 * widthOfSizes();
        image_ = QImage(std::max(options_.columns * cellWidth(), everything ? sizesWidth : 0),
                        std::max(1, height + rows * (options_.size + labelHeight)), QImage::Format_RGB32);
        image_.fill(light);
        painter_.begin(&image_);
        if (everything) {
            paintSizes();
            for (const QColor& ground : {light, dark}) paintRows(mouthCells(), ground, ground);
        }
        paintRows(cells, light, dark);
        painter_.end();
        return image_;
    }

private:
    double scaleFor(int height) const { return height / rig_.height; }
    int widthFor(int height) const { return static_cast<int>(rig_.width * scaleFor(height)) + 1; }
    int cellWidth() const { return widthFor(options_.size); }

    int widthOfSizes() const {
        int width = 0;
        for (const int size : sizes) width += widthFor(size);
        return width;
    }

    int rowsFor(std::size_t cells) const {
        return (static_cast<int>(cells) + options_.columns - 1) / options_.columns;
    }

    // Keys in which the whole figure can be seen; where there is none, all of them.
    std::vector<const Key*> tellingKeys(const Clip& clip) const {
        std::vector<const Key*> keys;
        for (const Key& key : clip.keys) {
            if (key.pose != rig_.rest && (keys.empty() || keys.back()->pose != key.pose))
                keys.push_back(&key);
        }
        if (keys.empty()) keys.push_back(&clip.keys.back());
        const auto most = static_cast<std::size_t>(options_.most);
        if (keys.size() <= most) return keys;
        std::vector<const Key*> chosen;
        for (std::size_t i = 0; i < most; ++i) chosen.push_back(keys[(2 * i + 1) * keys.size() / (2 * most)]);
        return chosen;
    }

    std::vector<Cell> clipCells() const {
        std::vector<Cell> cells;
        for (const Clip& clip : rig_.clips) {
            const QString name = QString::fromStdString(clip.name);
            if (!options_.clips.empty() && !options_.clips.contains(name, Qt::CaseInsensitive)) continue;
            for (const Key* key : tellingKeys(clip))
                cells.push_back({key->pose, QStringLiteral("%1 %2").arg(name).arg(key->at.count())});
        }
        return cells;
    }

    std::vector<Cell> mouthCells() const {
        std::vector<Cell> cells;
        const auto bone = rig_.bone("mouth");
        for (const auto shape : mouthShapes()) {
            Pose pose = rig_.rest;
            if (const auto slot = bone ? slotOf(rig_.bones[*bone], shape) : std::nullopt)
                pose[*bone].slot = *slot;
            cells.push_back({std::move(pose), toQt(shape)});
        }
        return cells;
    }

    void paintFigure(QPoint at, const Pose& pose, int height, const QString& label, const QColor& ground) {
        painter_.drawImage(at, art_.paint(rig_, pose, scaleFor(height)));
        painter_.setPen(ground.lightness() > 128 ? Qt::black : Qt::white);
        QFont font = painter_.font();
        font.setPixelSize(10);
        painter_.setFont(font);
        painter_.drawText(QRect(at + QPoint(2, height), QSize(widthFor(height) - 2, labelHeight)),
                          Qt::AlignLeft | Qt::AlignVCenter, label);
    }

    void paintSizes() {
        int x = 0;
        for (const QColor& ground : {light, dark}) {
            painter_.fillRect(x, 0, image_.width() - x, sizes.back() + labelHeight, ground);
            for (const int size : sizes) {
                paintFigure({x, sizes.back() - size}, rig_.rest, size, QString::number(size), ground);
                x += widthFor(size);
            }
        }
        top_ = sizes.back() + labelHeight;
    }

    void paintRows(const std::vector<Cell>& cells, const QColor& odd, const QColor& even) {
        const int rowHeight = options_.size + labelHeight;
        int column = 0;
        for (int row = 0; std::cmp_less(column, cells.size()); ++row) {
            const QColor& ground = row % 2 == 0 ? odd : even;
            painter_.fillRect(0, top_, image_.width(), rowHeight, ground);
            for (int i = 0; i < options_.columns && std::cmp_less(column, cells.size()); ++i, ++column) {
                const Cell& cell = cells[static_cast<std::size_t>(column)];
                paintFigure({i * cellWidth(), top_}, cell.pose, options_.size, cell.label, ground);
            }
            top_ += rowHeight;
        }
    }

    const Rig& rig_;
    PartArt& art_;
    SheetOptions options_;
    QImage image_;
    QPainter painter_;
    int top_ = 0;
};

}  // namespace

QImage contactSheet(const Rig& rig, PartArt& art, const SheetOptions& options) {
    return Sheet(rig, art, options).make();
}

}  // namespace agent
