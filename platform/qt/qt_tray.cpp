#include "platform/qt/qt_tray.h"

#include "platform/qt/binding.h"
#include "platform/qt/resources.h"
#include "platform/qt/text.h"

namespace velmora::qt {

void QtTray::add(const std::string& tip) {
    if (!icon_) {
        icon_.emplace(programIcon());
        QObject::connect(&*icon_, &QSystemTrayIcon::activated, &*icon_,
                         [this](QSystemTrayIcon::ActivationReason reason) { activated(reason); });
    }
    icon_->setToolTip(plainTip(shown(tip)));
    icon_->show();
}

// The icon may be the sender of the click that has it removed; it only goes out of sight.
void QtTray::remove() {
    if (icon_) icon_->hide();
}

void QtTray::activated(QSystemTrayIcon::ActivationReason reason) {
    const auto& handler = reason == QSystemTrayIcon::Context ? onRightClick : onClick;
    const bool counts = reason == QSystemTrayIcon::Context || reason == QSystemTrayIcon::Trigger;
    if (counts && handler) loop_.turn(handler);
}

}  // namespace velmora::qt
