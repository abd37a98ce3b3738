#pragma once

#include <QPoint>

class QScreen;

namespace agent {

/// The screen that a point is on, else the one nearest to it: between screens of different size there are
/// points on none. Never null while there is a screen at all.
QScreen* nearestScreen(QPoint point);

}  // namespace agent
