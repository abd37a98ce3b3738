#include "hosts/desktop_hearing.h"

namespace velmora {
namespace {

std::function<std::unique_ptr<agent::AudioSource>()> microphone(const Machine& machine) {
    if (machine.machineSettings.value("Hearing", "Device") == "none") return {};
    return agent::openMicrophone;
}

}  // namespace

DesktopHearing::DesktopHearing(Machine& machine, EngineAgent& agent)
    : machine_(machine),
      agent_(agent),
      hearing_({.agent = agent,
                .post = [&machine](
                            std::function<void()> call) { machine.loopHost.postFromThread(std::move(call)); },
                .microphone = microphone(machine)}),
      key_(machine.machineSettings.value("Hearing", "Key")) {
    agent.add(hearing_);
    hearing_.onTip = [this](const HeardTip& tip) { show(tip); };
    hearing_.onListening = [this](bool listening, const std::string& failure) {
        showListening(listening, failure);
    };
    key_.onPress = [this] { machine_.loop.turn([this] { hearing_.press(); }); };
    key_.onRelease = [this] { hearing_.release(); };
}

void DesktopHearing::show(const HeardTip& tip) {
    toldListening_ = false;
    std::vector<qt::HeardTipWindow::Choice> choices;
    for (const HeardTip::Choice& choice : tip.choices) {
        choices.push_back({choice.caption, [this, name = choice.name] {
                               // Picked with the mouse, so there is no doubt about it.
                               agent_.commanded({.Name = name, .Voice = {}, .Confidence = 0});
                           }});
    }
    window_.tell(tip.text, std::move(choices));
}

void DesktopHearing::showListening(bool listening, const std::string& failure) {
    if (listening) {
        toldListening_ = true;
        window_.tellListening();
    } else if (!failure.empty()) {
        toldListening_ = false;
        window_.tell(failure, {});
    } else if (toldListening_) {
        toldListening_ = false;
        window_.hide();
    }
}

}  // namespace velmora
