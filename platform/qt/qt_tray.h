#pragma once

#include <QRect>
#include <QSystemTrayIcon>
#include <optional>

#include "platform/loop.h"
#include "platform/shell.h"

namespace velmora::qt {

/// The program's icon in the desktop's tray; where there is none yet, it appears as soon as there is one.
class QtTray : public Tray {
public:
    explicit QtTray(Loop& loop) : loop_(loop) {}

    void add(const std::string& tip) override;
    void remove() override;

    /// Where the icon is on the desktop; empty if it is not there, or the desktop does not tell.
    QRect place() const { return icon_ && icon_->isVisible() ? icon_->geometry() : QRect(); }

    /// What Qt tells of a click on the icon.
    void activated(QSystemTrayIcon::ActivationReason reason);

private:
    Loop& loop_;
    std::optional<QSystemTrayIcon> icon_;
};

}  // namespace velmora::qt
