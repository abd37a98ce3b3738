#include "agent/qt/nearest_screen.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace agent {

QScreen* nearestScreen(QPoint point) {
    if (auto* screen = QGuiApplication::screenAt(point)) return screen;
    QScreen* nearest = QGuiApplication::primaryScreen();
    int least = -1;
    for (auto* screen : QGuiApplication::screens()) {
        const QRect area = screen->geometry();
        const QPoint inside(std::clamp(point.x(), area.left(), area.right()),
                            std::clamp(point.y(), area.top(), area.bottom()));
        const int distance = (point - inside).manhattanLength();
        if (least >= 0 && distance >= least) continue;
        least = distance;
        nearest = screen;
    }
    return nearest;
}

}  // namespace agent
