#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/file_dialogs.h"
#include "core/frm_about.h"
#include "core/main_menu.h"
#include "core/main_window_steps.h"
#include "core/notify_data.h"
#include "core/settings.h"
#include "platform/application.h"
#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/form.h"
#include "platform/list_controls.h"
#include "platform/machine_settings.h"
#include "platform/shell.h"

namespace velmora {

/// The program's hub: it hosts the character, the timers and the tray icon, and stays hidden until asked for.
/// Each panel's controls stand here; what they do is the panel's subsystem's.
class FrmMain : public Form {
public:
    struct Needs {
        const Application& application;
        Settings& settings;
        const std::string& IniFile;
        Clock& clock;
        Dialogs& dialogs;
        Tray& tray;
        const MachineSettings& machine;
        frmAbout& About;
        std::function<void(const std::string&)> Execute;
        std::function<void(const std::string&)> Speak;
        std::function<std::string()> UserName;
        std::function<void()> AgentQuit;
        std::function<void()> UnloadForms;
    };
    FrmMain(Forms& forms, Needs needs);

    /// Where a frame stands, in twips.
    struct Place {
        int Left;
        int Top;
    };
    static constexpr Place panelPlace{120, 1200};   ///< of the one frame in view
    static constexpr Place awayPlace{-9000, 1200};  ///< of the others

    Label LblClock{*this, "LblClock", {.Caption = "Time"}};
    Array<Button> cmdFrames{*this,
                            "cmdFrames",
                            {{.Caption = "Web Search", .ToolTipText = "Search the 'net"},
                             {.Caption = "Open File", .ToolTipText = "Open Files"},
                             {.Caption = "Set Alarm"},
                             {.Caption = "Mail"}},
                            &FrmMain::cmdFrames_Click};
    Button CmdMin{
        *this, "CmdMin", {.Caption = "--", .ToolTipText = "Minimize Window"}, &FrmMain::CmdMin_Click};
    Button cmdOptions{*this,
                      "cmdOptions",
                      {.Caption = "Options", .ToolTipText = "Programme Options."},
                      &FrmMain::cmdOptions_Click};

    Frame FrameSearch{
        *this, "FrameSearch", {.Caption = "Search", .Left = panelPlace.Left, .Top = panelPlace.Top}};
    ComboBox comEngine{
        *this,
        "comEngine",
        {.Text = "Search Engine",
         .List = {"Lycos", "Yahoo", "Alta Vista", "Excite", "Hotbot", "Infoseek", "SoftSeek", "AudioFind"}}};
    Label lblFor{*this, "lblFor", {.Caption = "for"}};
    ComboBox comQuery{*this, "comQuery", {.Text = "New Search"}};
    Button cmdSearch{*this, "cmdSearch", {.Caption = "Go!"}};

    Frame FrameOpen{
        *this, "FrameOpen", {.Caption = "Open File", .Left = awayPlace.Left, .Top = awayPlace.Top}};
    TextBox txtOpenFile{*this, "txtOpenFile"};
    Button cmdOpenBrowse{*this, "cmdOpenBrowse", {.Caption = "Browse"}};
    Button cmdOpenGo{*this, "cmdOpenGo", {.Caption = "Open"}};

    Frame FrameAlarm{
        *this, "FrameAlarm", {.Caption = "Set Alarm", .Left = awayPlace.Left, .Top = awayPlace.Top}};
    DTPicker AlarmTPick{*this, "AlarmTPick", {.Shows = PickerKind::time}};
    TextBox txtAlarmEvent{*this, "txtAlarmEvent", {.Text = "Event"}};
    Button cmdAlarmSet{*this, "cmdAlarmSet", {.Caption = "Set"}};
    Button cmdAlarmOptions{*this, "cmdAlarmOptions", {.Caption = "Options"}};

    Frame FrameMail{*this, "FrameMail", {.Caption = "Mail", .Left = awayPlace.Left, .Top = awayPlace.Top}};
    Label Label1{*this, "Label1", {.Caption = "New Mail:"}};
    ImageCombo comMail{*this, "comMail"};
    Button cmdReadMsg{
        *this, "cmdReadMsg", {.Caption = "Read Message", .Enabled = false}, &FrmMain::cmdReadMsg_Click};

    FileListBox fleSongs{*this, "fleSongs", {.Visible = false}};

    Timer Timer1{*this, "Timer1", {.Interval = 1000}, &FrmMain::Timer1_Timer};
    Timer TmrMail{*this, "TmrMail", {.Interval = 60000, .Enabled = false}};
    Timer TmrTip{*this, "TmrTip", {.Interval = 60000}};
    Timer TimerJoke{*this, "TimerJoke", {.Interval = 60000, .Enabled = false}};

    MainMenu menu{*this};

    std::string MainKey;
    std::string OutlookEnabled;
    std::string UID;
    std::string NickName;
    std::int16_t MailInterval = 0;  ///< minutes between mail checks
    bool ReadEntire = false;        ///< whether the body of a message is read with its subject
    velmora::NotifyData NotifyData{*this, "Velmora"};
    FileDialogs fileDialogs;

    FormLoadSteps steps;
    MainWindowSteps windowSteps;
    MessengerWindow messenger;

    /// The hour, ":" and the minute, without leading zeros: `9:5` is meant.
    void UpdateClock();
    /// Brings the panel of that index into view; the one of the alarm takes the present time.
    void cmdFrames_Click(int Index);
    /// Shows the window at its normal size.
    void bringUp();
    /// Shows the window with that panel, whatever state it is in.
    void showPanel(int Index);
    /// What a mouse move over the window, or the icon in the tray, comes in by. `X` is in twips; in pixels it
    /// is the message's number.
    void Form_MouseMove(long X);
    void CmdMin_Click();
    void cmdOptions_Click();
    void cmdReadMsg_Click();
    void mnuAbout_Click();
    void mnuVersion_Click();
    void mnuHelp_Click();
    void mnuMyHome_Click();
    void mnuMessengerOpen_Click();
    void mnuCalender_Click();
    void mnuExit_Click();

protected:
    void Form_Load() override;
    void Form_QueryUnload() override;
    void Form_Unload() override;
    void Form_Terminate() override;

private:
    void Timer1_Timer();
    After loadFailed(const Failure& failure);
    std::string setting(std::string_view section, std::string_view key) const;

    Needs needs_;
};

}  // namespace velmora
