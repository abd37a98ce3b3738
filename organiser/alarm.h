#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <variant>

#include "platform/agent_control.h"
#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/menu.h"
#include "platform/regional.h"

namespace velmora {

/// The one alarm, and the panel of the main window that sets it. It is kept nowhere: it lasts as long as the
/// program runs.
class Alarm {
public:
    struct Needs {
        DTPicker& AlarmTPick;
        TextBox& txtAlarmEvent;
        Button& cmdAlarmSet;
        Button& cmdAlarmOptions;
        Menu& mnuAlarm;
        Clock& clock;
        const Regional& regional;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void()> AgentVisible;
        std::function<void()> showOptions;
        std::function<void()> show;  ///< the window, with this panel
    };
    explicit Alarm(Needs needs);

    /// A time of day, or the text that was given in place of one; empty: no alarm is set. A time counts as
    /// lower than any text.
    using Time = std::variant<std::chrono::seconds, std::string>;

    Time AlarmTime = std::string();
    std::string AlarmSay;    ///< the words in front of the event
    std::string AlarmEvent;  ///< what it is for
    bool AlarmSilent = false;

    /// Sets the alarm to what a picker delivers: a time, or a text that may be one. Says what is wrong with a
    /// text that is not.
    void set(Time picked);

    /// What the main window's timer does each second: the alarm goes off at the first call at or after its
    /// time of day, and once.
    void check();

    /// For the load of the main window: no alarm is set.
    void clear() { AlarmTime = std::string(); }

private:
    void mnuAlarm_Click();
    void cmdAlarmSet_Click();
    void cmdAlarmOptions_Click();
    void goOff();

    Needs needs_;
    bool AlarmFired_ = false;
};

}  // namespace velmora
