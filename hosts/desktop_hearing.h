#pragma once

#include <QTimer>
#include <string>

#include "hosts/character_windows.h"
#include "hosts/hearing.h"
#include "hosts/machine.h"
#include "platform/qt/heard_tip.h"
#include "platform/qt/qt_tray.h"
#include "platform/qt/talk_key.h"

namespace velmora {

/// The microphone on a desktop: what is shown of it, and the key that turns it on.
class DesktopHearing {
public:
    struct Needs {
        Machine& machine;
        EngineAgent& agent;
        CharacterWindows& windows;  ///< one of which offers to listen, and to choose the key
        const qt::QtTray& tray;
    };
    /// All of them outlive this. The key is the one that `platform.conf` names; why that can't be had is said
    /// on standard error.
    explicit DesktopHearing(const Needs& needs);
    ~DesktopHearing();
    DesktopHearing(const DesktopHearing&) = delete;
    DesktopHearing& operator=(const DesktopHearing&) = delete;

private:
    QRect place() const;
    void takeKey();
    void press();
    void show(const HeardTip& tip);
    void showListening();
    void showEnd(const std::string& failure);

    Needs needs_;
    const bool turnedOff_;        ///< by `platform.conf`
    bool pressed_ = false;        ///< the key is held down
    bool toldListening_ = false;  ///< and nothing since
    std::string keyName_;         ///< as `platform.conf` has it
    qt::HeardTipWindow window_;
    Hearing hearing_;
    qt::TalkKey key_;
    QTimer patience_;  ///< with a device that does not answer
};

}  // namespace velmora
