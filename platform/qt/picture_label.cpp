#include "platform/qt/picture_label.h"

#include <QEvent>
#include <QPainter>

namespace velmora::qt {

PictureLabel::PictureLabel(QWidget* parent) : QWidget(parent) {
    drawing_.setAspectRatioMode(Qt::KeepAspectRatio);
}

QSize PictureLabel::sizeHint() const {
    return drawing_.defaultSize();
}

bool PictureLabel::event(QEvent* event) {
    if (event->type() == QEvent::DynamicPropertyChange) {
        drawing_.load(property("picture").toString());
        updateGeometry();
        update();
    }
    return QWidget::event(event);
}

void PictureLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing_.render(&painter, rect());
}

}  // namespace velmora::qt
