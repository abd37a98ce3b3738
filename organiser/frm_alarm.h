#pragma once

#include <functional>

#include "organiser/alarm.h"
#include "platform/controls.h"
#include "platform/form.h"

namespace velmora {

/// How the alarm sounds.
class FrmAlarm : public Form {
public:
    struct Needs {
        Alarm& alarm;
        TextBox& txtAlarmEvent;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void()> AgentVisible;
    };
    FrmAlarm(Forms& forms, Needs needs);

    Frame FrameOptions{*this, "FrameOptions", {.Caption = "Options"}};
    CheckBox ChkSilent{*this, "ChkSilent", {.Caption = "Silent Mode"}, &FrmAlarm::ChkSilent_Click};
    Label LblSayThis{*this, "LblSayThis", {.Caption = "Say This:"}};
    TextBox TxtAlarmSay{*this, "TxtAlarmSay"};
    Button CmdTest{*this, "CmdTest", {.Caption = "Test"}, &FrmAlarm::CmdTest_Click};
    Button CmdOK{*this, "CmdOK", {.Caption = "OK"}, &FrmAlarm::CmdOK_Click};

private:
    void ChkSilent_Click();
    void CmdTest_Click();
    void CmdOK_Click();

    Needs needs_;
};

}  // namespace velmora
