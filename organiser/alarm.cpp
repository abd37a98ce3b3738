#include "organiser/alarm.h"

#include "base/failure.h"

namespace velmora {

Alarm::Alarm(Needs needs) : needs_(std::move(needs)) {
    needs_.mnuAlarm.Click.connect([this] { mnuAlarm_Click(); });
    needs_.cmdAlarmSet.Click.connect([this] { cmdAlarmSet_Click(); });
    needs_.cmdAlarmOptions.Click.connect([this] { cmdAlarmOptions_Click(); });
}

void Alarm::mnuAlarm_Click() {
    needs_.show();
}

void Alarm::cmdAlarmOptions_Click() {
    needs_.showOptions();
}

void Alarm::cmdAlarmSet_Click() {
    // The picker's date is that of its last setting, and no part of the alarm.
    set(needs_.AlarmTPick.Value.get().time);
}

void Alarm::set(Time picked) {
    AlarmTime = std::move(picked);
    if (const auto* text = std::get_if<std::string>(&AlarmTime)) {
        if (text->empty()) return passOver([&] { needs_.Character().Speak("You must enter a time."); });
        try {
            AlarmTime = needs_.regional.toDateTime(*text).time;
        } catch (const Failure&) {
            passOver([&] { needs_.Character().Speak("The time you entered was not valid."); });
        }
    }
    AlarmEvent = needs_.txtAlarmEvent.Text;
}

void Alarm::check() {
    // With no time set, the alarm never goes off, and is made ready again.
    const bool reached = Time(needs_.clock.now().time) >= AlarmTime;
    if (!reached) {
        AlarmFired_ = false;
    } else if (!AlarmFired_) {
        goOff();
    }
}

void Alarm::goOff() {
    const auto words = [this] { return AlarmSay + " " + AlarmEvent; };
    passOver([&] { needs_.AgentVisible(); });
    if (AlarmSilent) {
        passOver([&] { needs_.Character().Play("GetAttention"); }, [&] { needs_.Character().Think(words()); },
                 [&] { needs_.Character().Play("GetAttentionReturn"); });
    } else {
        passOver([&] { needs_.Character().Play("Announce"); }, [&] { needs_.Character().Speak(words()); });
    }
    AlarmFired_ = true;
    clear();
    AlarmEvent.clear();
}

}  // namespace velmora
