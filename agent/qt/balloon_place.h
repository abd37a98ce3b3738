#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace agent {

/// The side of a balloon at which its tail leaves it.
enum class TailSide { bottom, left, right, top };

/// Where a balloon stands on the desktop.
struct BalloonPlace {
    QRect body;
    QPoint tip;  ///< the tail's end
    TailSide side = TailSide::bottom;
};

/// How large a balloon is, and how large it is going to be, which is no less.
struct BalloonSize {
    QSize now;
    QSize later;
};

/// Places a balloon by a figure, where there is room for it later: above, else beside, else below; where it
/// fits nowhere, above and over the figure. It stays inside `available` if it is not larger; `tail` is the
/// length of its tail.
BalloonPlace placeBalloon(QRect figure, BalloonSize size, int tail, QRect available);

}  // namespace agent
