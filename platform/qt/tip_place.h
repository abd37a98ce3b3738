#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

namespace velmora::qt {

/// Where a tip of that size has its upper left corner: below the figure, else at its left, its right or above
/// it, where the figure's balloon rarely is; in the lower right corner for an empty `figure`. It stays inside
/// `available` if it is not larger.
QPoint placeTip(QRect figure, QSize size, QRect available);

}  // namespace velmora::qt
