#include "platform/qt/form_window.h"

#include <QAbstractButton>
#include <QCloseEvent>

namespace velmora::qt {

FormWindow::FormWindow() : QDialog(nullptr, Qt::Window) {
    setAttribute(Qt::WA_QuitOnClose, false);
}

void FormWindow::finish() {
    if (!property("splash").toBool()) return;
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_ShowWithoutActivating);
}

void FormWindow::reject() {
    for (auto* button : findChildren<QAbstractButton*>()) {
        if (button->property("cancel").toBool()) return button->click();
    }
}

void FormWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    const auto told = onClose;  // the call may take this window down, and what it was told with it
    if (told) told();
}

void FormWindow::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    const auto told = onMinimise;
    if (event->type() == QEvent::WindowStateChange && told) told(isMinimized());
}

}  // namespace velmora::qt
