#include "agent/qt/balloon_place.h"

#include <algorithm>

namespace agent {
namespace {

int within(int wanted, int length, int first, int last) {
    return std::max(first, std::min(wanted, last + 1 - length));
}

}  // namespace

BalloonPlace placeBalloon(QRect figure, QSize size, int tail, QRect available) {
    const int x =
        within(figure.center().x() - size.width() / 2, size.width(), available.left(), available.right());
    const int face = figure.top() + figure.height() / 3;
    const int y = within(face - size.height() / 2, size.height(), available.top(), available.bottom());
    const int above = figure.top() - tail - size.height();
    const int right = figure.right() + 1 + tail;
    const int left = figure.left() - tail - size.width();
    const int below = figure.bottom() + 1 + tail;
    if (above >= available.top()) {
        return {{QPoint(x, above), size}, {figure.center().x(), figure.top()}, TailSide::bottom};
    }
    if (right + size.width() <= available.right() + 1) {
        return {{QPoint(right, y), size}, {figure.right() + 1, face}, TailSide::left};
    }
    if (left >= available.left()) return {{QPoint(left, y), size}, {figure.left(), face}, TailSide::right};
    if (below + size.height() <= available.bottom() + 1) {
        return {{QPoint(x, below), size}, {figure.center().x(), figure.bottom() + 1}, TailSide::top};
    }
    const int top = within(above, size.height(), available.top(), available.bottom());
    return {{QPoint(x, top), size}, {figure.center().x(), top + size.height() + tail}, TailSide::bottom};
}

}  // namespace agent
