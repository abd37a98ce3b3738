#pragma once

#include <functional>
#include <string>

#include "core/settings.h"
#include "core/step.h"
#include "organiser/appointment_list.h"
#include "platform/agent_control.h"
#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/form.h"
#include "platform/list_controls.h"
#include "platform/menu.h"
#include "platform/regional.h"

namespace velmora {

/// The calendar: appointments in memory while the program runs, in one enciphered file between runs. The
/// greeting loads it, hidden; closing it saves.
class FrmCalender : public Form {
public:
    struct Needs {
        Settings& settings;
        const std::string& IniFile;
        Files& files;
        const std::string& applicationFolder;
        Clock& clock;
        const Regional& regional;
        Dialogs& dialogs;
        std::function<bool(const std::string&)> FileExists;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void()> AgentVisible;
    };
    FrmCalender(Forms& forms, Needs needs);

    /// The file, in the application folder; one for all profiles.
    static constexpr std::string_view fileName = "Appointments.txt";

    Menu mnuFile{*this, "mnuFile", {.Caption = "File"}};
    Menu mnuReaddates{
        *this, mnuFile, "mnuReaddates", {.Caption = "Read Dates"}, &FrmCalender::mnuReaddates_Click};
    Menu mnuFileClose{
        *this, mnuFile, "mnuFileClose", {.Caption = "Close Calender"}, &FrmCalender::mnuFileClose_Click};
    Menu MnuMain{*this, "MnuMain", {.Caption = "Outlook"}};
    Menu mnuTask{*this, MnuMain, "mnuTask", {.Caption = "New task"}, &FrmCalender::mnuTask_Click};
    Menu mnuApp{*this, MnuMain, "mnuApp", {.Caption = "New Appointment"}, &FrmCalender::mnuApp_Click};
    Menu mnuAppPopUp{*this, "mnuAppPopUp", {.Caption = "Appointment"}};
    Menu mnuDetails{*this, mnuAppPopUp, "mnuDetails", {.Caption = "Details"}, &FrmCalender::mnuDetails_Click};
    Menu mnuRemove{*this, mnuAppPopUp, "mnuRemove", {.Caption = "Remove"}, &FrmCalender::mnuRemove_Click};

    Label LblCalender{*this, "LblCalender", {.Caption = "Calender"}};
    MonthView Calender{*this, "Calender"};
    DTPicker AppTime{*this, "AppTime", {.Shows = PickerKind::time}};
    TextBox txtEvent{*this, "txtEvent", {.Text = "Event"}};
    Button cmdAddApp{*this,
                     "cmdAddApp",
                     {.Caption = "Add", .ToolTipText = "Add this appointment."},
                     &FrmCalender::cmdAddApp_Click};
    Frame FrameApps{*this, "FrameApps", {.Caption = "Appointments."}};
    ListView lvApps{*this, "lvApps"};

    AppointmentList AppList;
    bool AppsLoaded = false;
    bool ReadDatesOn = false;
    std::string SpokenDate;

    /// What the two entries of the menu "Outlook" do.
    Step NewTask;
    Step NewAppointment;

    /// Fills `SpokenDate` from the chosen date.
    void BuildSpokenDate();
    /// Shows the chosen date's appointments.
    void RefreshAppList();
    /// Says what is due today; the form is loaded if need be. Reading of dates plays no part in it.
    void CheckTodaysApps();
    /// Adds what the file holds. Without a file `AppsLoaded` is meant to stay False: the next load of the
    /// form then reads what was saved meanwhile on top of what is still in memory.
    void LoadAppointments();
    /// Writes the file anew, whole; what can't be written leaves the old one.
    void SaveAppointments();
    /// From now on the window has no menu for Outlook. Loads nothing.
    void hideOutlookMenu();

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    void Calender_Change();
    void cmdAddApp_Click();
    void lvApps_MouseUp();
    void mnuReaddates_Click();
    void mnuFileClose_Click();
    void mnuTask_Click();
    void mnuApp_Click();
    void mnuDetails_Click();
    void mnuRemove_Click();

    void refuse(const std::string& reason);
    void listAppointment(std::size_t index, const std::string& presentTime);
    void markDays();
    void showFileError(std::string_view doing, const Failure& failure);
    void showError(const Failure& failure, BoxIcon icon);

    Needs needs_;
    bool outlookHidden_ = false;
};

}  // namespace velmora
