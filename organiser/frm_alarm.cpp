#include "organiser/frm_alarm.h"

#include "base/failure.h"

namespace velmora {

FrmAlarm::FrmAlarm(Forms& forms, Needs needs)
    : Form(forms, "FrmAlarm", "Set Alarm"), needs_(std::move(needs)) {}

// Silent mode holds from the click on, also if the window is closed without OK: on purpose.
void FrmAlarm::ChkSilent_Click() {
    needs_.alarm.AlarmSilent = ChkSilent.Value == 1;
}

// The event is meant to stay that of the alarm, and the test to be spoken aloud, also in silent mode.
void FrmAlarm::CmdTest_Click() {
    passOver([&] { needs_.AgentVisible(); }, [&] { needs_.alarm.AlarmEvent = needs_.txtAlarmEvent.Text; },
             [&] { needs_.Character().Speak(TxtAlarmSay.Text.get() + needs_.txtAlarmEvent.Text.get()); });
}

void FrmAlarm::CmdOK_Click() {
    needs_.alarm.AlarmSay = TxtAlarmSay.Text;
    Unload();
}

}  // namespace velmora
