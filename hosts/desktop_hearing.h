#pragma once

#include "hosts/hearing.h"
#include "hosts/machine.h"
#include "platform/qt/heard_tip.h"
#include "platform/qt/talk_key.h"

namespace velmora {

/// The microphone on a desktop: what is shown of it, and the key that turns it on.
class DesktopHearing {
public:
    /// Machine and agent outlive this. The key is the one that `platform.conf` names.
    DesktopHearing(Machine& machine, EngineAgent& agent);

private:
    void show(const HeardTip& tip);
    void showListening(bool listening, const std::string& failure);

    Machine& machine_;
    EngineAgent& agent_;
    bool toldListening_ = false;
    qt::HeardTipWindow window_;
    Hearing hearing_;
    qt::TalkKey key_;
};

}  // namespace velmora
