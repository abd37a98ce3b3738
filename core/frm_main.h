#pragma once

#include <functional>
#include <string>

#include "core/settings.h"
#include "core/step.h"
#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/form.h"
#include "platform/machine_settings.h"
#include "platform/menu.h"
#include "platform/shell.h"

namespace velmora {

/// What the load of the main window asks of the subsystems, in the order of the load. A subsystem that joins
/// the program fills its steps in the composition; the order is fixed here.
struct FormLoadSteps {
    Step fillWordTips;
    Step clearTipTicks;
    Step hideOutlookMenus;  ///< only if the profile has not enabled Outlook
    Step clearAlarm;
    Step ReadMailSettings;
    Step SetAccessoriesMnu;
    Step loadLaunchLists;
    Step clearRequests;
    Step loadJokesAndTips;
    Step clearMailTimer;
    Step buildSongList;
};

/// The program's hub: it hosts the character, the timers and the tray icon, and stays hidden until asked for.
class FrmMain : public Form {
public:
    struct Needs {
        Settings& settings;
        const std::string& IniFile;
        Clock& clock;
        Dialogs& dialogs;
        Tray& tray;
        const MachineSettings& machine;
        std::function<void(const std::string&)> Execute;
        std::function<void()> AgentQuit;
        std::function<void()> UnloadForms;
    };
    FrmMain(Forms& forms, Needs needs);

    Label LblClock{*this, "LblClock", {.Caption = "Time"}};
    Timer Timer1{*this, "Timer1", {.Interval = 1000}, &FrmMain::Timer1_Timer};
    Timer TmrMail{*this, "TmrMail", {.Interval = 60000, .Enabled = false}};
    Timer TimerJoke{*this, "TimerJoke", {.Interval = 60000, .Enabled = false}};

    Menu MnuMain{*this, "MnuMain", {.Caption = "Main"}};
    Menu mnuGeneral{*this, MnuMain, "mnuGeneral", {.Caption = "General"}};
    Menu mnuACo{*this, mnuGeneral, "mnuACo", {.Caption = "Character Options"}};
    Menu mnuChangeAgent{*this, mnuGeneral, "mnuChangeAgent", {.Caption = "Change Agent"}};
    Menu mnuSep4{*this, MnuMain, "mnuSep4", {.Caption = "-"}};
    Menu mnuHide{*this, MnuMain, "mnuHide", {.Caption = "Hide"}};
    Menu mnusep5{*this, MnuMain, "mnusep5", {.Caption = "-"}};
    Menu mnuExit{*this, MnuMain, "mnuExit", {.Caption = "Exit"}, &FrmMain::mnuExit_Click};

    std::string MainKey;
    std::string OutlookEnabled;
    std::string UID;
    std::string NickName;

    FormLoadSteps steps;

    /// The hour, ":" and the minute, without leading zeros: `9:5` is meant.
    void UpdateClock();
    void mnuExit_Click();

protected:
    void Form_Load() override;
    void Form_QueryUnload() override;
    void Form_Unload() override;
    void Form_Terminate() override;

private:
    void Timer1_Timer();
    void bringUp();
    After loadFailed(const Failure& failure);
    std::string setting(std::string_view section, std::string_view key) const;

    Needs needs_;
};

}  // namespace velmora
