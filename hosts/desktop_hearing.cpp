#include "hosts/desktop_hearing.h"

#include <algorithm>
#include <chrono>
#include <iostream>

namespace velmora {
namespace {

constexpr std::chrono::seconds toOpen{5};
constexpr std::chrono::seconds toListen{40};  // twice what the ear takes for the longest phrase

// As a person reads it on the keyboard.
std::string shownKey(std::string name) {
    std::ranges::replace(name, '_', ' ');
    return name;
}

}  // namespace

DesktopHearing::DesktopHearing(const Needs& needs)
    : needs_(needs),
      turnedOff_(needs.machine.machineSettings.value("Hearing", "Device") == "none"),
      window_([this] { return place(); }),
      hearing_({.agent = needs.agent,
                .post = [&machine = needs.machine](
                            std::function<void()> call) { machine.loopHost.postFromThread(std::move(call)); },
                .microphone = [off = turnedOff_]() -> std::unique_ptr<agent::AudioSource> {
                    return off ? nullptr : agent::openMicrophone();
                }}) {
    needs_.agent.add(hearing_);
    patience_.setSingleShot(true);
    QObject::connect(&patience_, &QTimer::timeout, &patience_, [this] { hearing_.giveUp(); });
    hearing_.onAsked = [this] { patience_.start(toOpen); };
    hearing_.onTip = [this](const HeardTip& tip) { show(tip); };
    hearing_.onListening = [this] {
        patience_.start(toListen);
        showListening();
    };
    hearing_.onEnd = [this](const std::string& failure) {
        patience_.stop();
        showEnd(failure);
    };
    window_.onDismissed = [this] { hearing_.listenAsked(false); };
    key_.onPress = [this] {
        pressed_ = true;
        press();
    };
    key_.onRelease = [this] {
        pressed_ = false;
        hearing_.release();
    };
    key_.onShiftPress = [this] { window_.takeKeyboard(); };
    needs_.windows.onListenNow = [this] { press(); };
    needs_.windows.onApplied = [this] { takeKey(); };
    needs_.windows.onFigureMoved = [this] {
        if (window_.isVisible()) window_.follow();
    };
    takeKey();
}

DesktopHearing::~DesktopHearing() {
    needs_.windows.onListenNow = needs_.windows.onApplied = needs_.windows.onFigureMoved = {};
}

// Beside the figure; if that is hidden, beside the icon that brings it back.
QRect DesktopHearing::place() const {
    const QRect figure = needs_.windows.figureArea();
    return figure.isEmpty() ? needs_.tray.place() : figure;
}

void DesktopHearing::takeKey() {
    const std::string name = needs_.machine.machineSettings.value("Hearing", "Key");
    if (name == keyName_) return;
    keyName_ = name;
    const std::string refusal = key_.use(turnedOff_ ? std::string() : name);
    if (!refusal.empty()) std::cerr << "velmora: " << refusal << "\n";
}

void DesktopHearing::press() {
    needs_.machine.loop.turn([this] { hearing_.press(); });
}

void DesktopHearing::show(const HeardTip& tip) {
    patience_.stop();
    toldListening_ = false;
    std::vector<qt::HeardTipWindow::Choice> choices;
    for (const HeardTip::Choice& choice : tip.choices) {
        choices.push_back({choice.caption, [this, name = choice.name] {
                               // Picked by hand, so there is no doubt about it.
                               needs_.agent.commanded({.Name = name, .Voice = {}, .Confidence = 0});
                           }});
    }
    window_.tell(tip.text, std::move(choices),
                 key_.works() ? "Or did you mean (Shift+" + shownKey(keyName_) + "):" : "Or did you mean:");
}

void DesktopHearing::showListening() {
    toldListening_ = true;
    std::string hint;
    if (pressed_) {
        hint = "Let go of " + shownKey(keyName_) + " when you have said it.";
    } else if (key_.works()) {
        hint = "Or hold " + shownKey(keyName_) + " while you speak.";
    }
    window_.tellListening(hint);
}

void DesktopHearing::showEnd(const std::string& failure) {
    if (!failure.empty()) {
        window_.tell(turnedOff_ ? "The microphone is turned off in platform.conf." : failure, {}, {});
    } else if (toldListening_) {
        window_.hide();
    }
    toldListening_ = false;
}

}  // namespace velmora
