#include "platform/qt/tip_place.h"

#include <algorithm>
#include <array>

namespace velmora::qt {
namespace {

constexpr int gap = 6;
constexpr int margin = 24;

int within(int wanted, int length, int first, int last) {
    return std::max(first, std::min(wanted, last + 1 - length));
}

}  // namespace

QPoint placeTip(QRect figure, QSize size, QRect available) {
    const auto inside = [&](QPoint corner) {
        return QPoint(within(corner.x(), size.width(), available.left(), available.right()),
                      within(corner.y(), size.height(), available.top(), available.bottom()));
    };
    if (figure.isEmpty())
        return inside(available.bottomRight() - QPoint(size.width() + margin, size.height() + margin));
    const int x = figure.left() + (figure.width() - size.width()) / 2;
    const int y = figure.top() + (figure.height() - size.height()) / 2;
    const std::array corners{
        inside({x, figure.bottom() + 1 + gap}), inside({figure.left() - gap - size.width(), y}),
        inside({figure.right() + 1 + gap, y}), inside({x, figure.top() - gap - size.height()})};
    const auto* const clear = std::ranges::find_if(corners, [&](QPoint corner) {
        return !figure.intersects({corner, size});
    });
    return clear != corners.end() ? *clear : corners.front();
}

}  // namespace velmora::qt
