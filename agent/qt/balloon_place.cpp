#include "agent/qt/balloon_place.h"

#include <algorithm>

namespace agent {
namespace {

int within(int wanted, int length, int first, int last) {
    return std::max(first, std::min(wanted, last + 1 - length));
}

}  // namespace

BalloonPlace placeBalloon(QRect figure, BalloonSize size, int tail, QRect available) {
    const auto [now, later] = size;
    const int x =
        within(figure.center().x() - now.width() / 2, now.width(), available.left(), available.right());
    const int face = figure.top() + figure.height() / 3;
    // What is higher than the figure grows downwards, as long as it can: its lines stay where they are.
    const int y = within(face - std::min(now.height(), figure.height()) / 2, now.height(), available.top(),
                         available.bottom());
    const int above = figure.top() - tail;
    const int right = figure.right() + 1 + tail;
    const int left = figure.left() - tail;
    const int below = figure.bottom() + 1 + tail;
    if (above - later.height() >= available.top()) {
        return {
            {QPoint(x, above - now.height()), now}, {figure.center().x(), figure.top()}, TailSide::bottom};
    }
    if (right + later.width() <= available.right() + 1) {
        return {{QPoint(right, y), now}, {figure.right() + 1, face}, TailSide::left};
    }
    if (left - later.width() >= available.left()) {
        return {{QPoint(left - now.width(), y), now}, {figure.left(), face}, TailSide::right};
    }
    if (below + later.height() <= available.bottom() + 1) {
        return {{QPoint(x, below), now}, {figure.center().x(), figure.bottom() + 1}, TailSide::top};
    }
    const int top = within(above - now.height(), now.height(), available.top(), available.bottom());
    return {{QPoint(x, top), now}, {figure.center().x(), top + now.height() + tail}, TailSide::bottom};
}

}  // namespace agent
