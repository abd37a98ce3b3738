#include "platform/qt/qt_pointer.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace velmora::qt {

ScreenPoint QtPointer::position() const {
    const QScreen* primary = QGuiApplication::primaryScreen();
    if (!primary) return {};
    const QScreen* under = QGuiApplication::screenAt(QCursor::pos());
    const QScreen& screen = under ? *under : *primary;
    // Qt scales a screen about its corner, which itself is in pixels of the device.
    const QPoint corner = screen.geometry().topLeft();
    const QPointF inside = QPointF(QCursor::pos() - corner) * screen.devicePixelRatio();
    const QPoint place = corner + inside.toPoint() - primary->virtualGeometry().topLeft();
    return {place.x(), place.y()};
}

}  // namespace velmora::qt
