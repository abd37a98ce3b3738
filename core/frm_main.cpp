#include "core/frm_main.h"

#include <algorithm>
#include <array>
#include <chrono>

#include "base/conversions.h"
#include "core/crypter.h"
#include "core/error_report.h"

namespace velmora {
namespace {

enum class Reaction { leave, next, startUpBox, report };

struct LoadFailure {
    long number;
    Reaction reaction;
};

/// What the load of the form does about a failure; every other number is reported.
constexpr std::array loadFailures{
    LoadFailure{errors::characterUnavailable, Reaction::leave},
    LoadFailure{errors::pathNotFound, Reaction::next},
    LoadFailure{errors::typeMismatch, Reaction::next},
    LoadFailure{0, Reaction::leave},
    LoadFailure{errors::objectNotSet, Reaction::startUpBox},
};

constexpr long twipsPerPixel = 15;

Reaction reactionTo(long number) {
    const auto* found = std::find_if(loadFailures.begin(), loadFailures.end(),
                                     [number](const LoadFailure& row) { return row.number == number; });
    return found == loadFailures.end() ? Reaction::report : found->reaction;
}

}  // namespace

FrmMain::FrmMain(Forms& forms, Needs needs)
    : Form(forms, "FrmMain", "Velmora"), fileDialogs(needs.dialogs), needs_(std::move(needs)) {
    needs_.tray.onClick = [this] { Form_MouseMove(tray_messages::leftButtonUp * twipsPerPixel); };
    needs_.tray.onRightClick = [this] { Form_MouseMove(tray_messages::rightButtonDown * twipsPerPixel); };

    struct Handler {
        std::string_view entry;
        void (FrmMain::*run)();
    };
    static constexpr std::array handlers{
        Handler{"mnuAbout", &FrmMain::mnuAbout_Click},
        Handler{"mnuVersion", &FrmMain::mnuVersion_Click},
        Handler{"mnuHelp", &FrmMain::mnuHelp_Click},
        Handler{"mnuMyHome", &FrmMain::mnuMyHome_Click},
        Handler{"mnuMessengerOpen", &FrmMain::mnuMessengerOpen_Click},
        Handler{"mnuCalender", &FrmMain::mnuCalender_Click},
        Handler{"mnuExit", &FrmMain::mnuExit_Click},
    };
    for (const auto& [entry, run] : handlers) {
        menu(entry).Click.connect([this, run = run] { (this->*run)(); });
    }
}

std::string FrmMain::setting(std::string_view section, std::string_view key) const {
    return needs_.settings.ReadIni(section, key, missingValue, needs_.IniFile);
}

void FrmMain::Form_Load() {
    bool outlook = false;
    guarded(
        [this](const Failure& failure) { return loadFailed(failure); }, [&] { steps.fillWordTips(); },
        [&] { steps.clearTipTicks(); }, [&] { MainKey = mainKey; },
        [&] { OutlookEnabled = setting("User", "OutlookEnabled"); },
        [&] { outlook = toBoolean(OutlookEnabled); },  // a text that does not convert counts as not True
        [&] {
            if (outlook) return;
            menu("mnuOutlook").Visible = false;
            steps.hideCalenderOutlookMenu();
        },
        [&] { UpdateClock(); }, [&] { steps.clearAlarm(); }, [&] { steps.ReadMailSettings(); },
        [&] { steps.SetAccessoriesMnu(); }, [&] { steps.loadLaunchLists(); }, [&] { steps.clearRequests(); },
        [&] { steps.loadJokesAndTips(); }, [&] { TimerJoke.Enabled = setting("Options", "Jokes") == "On"; },
        [&] { steps.clearMailTimer(); }, [&] { needs_.tray.add(NotifyData.tipText()); },
        [&] { steps.buildSongList(); },
        // A missing key is deciphered as it stands, to a meaningless text that nothing checks: on purpose.
        [&] { UID = Decipher(setting("Messenger", "UID"), MainKey); },
        [&] { NickName = Decipher(setting("Messenger", "NickName"), MainKey); });
}

After FrmMain::loadFailed(const Failure& failure) {
    switch (reactionTo(failure.number)) {
        case Reaction::next:
            return After::next;
        case Reaction::leave:
            break;
        case Reaction::startUpBox:
            showStartUpBox(needs_.dialogs);
            break;
        case Reaction::report:
            reportError(needs_.dialogs, failure, needs_.machine.value("Feedback", "Address"), needs_.Execute);
            break;
    }
    return After::leave;
}

void FrmMain::UpdateClock() {
    const std::chrono::hh_mm_ss time(needs_.clock.now().time);
    LblClock.Caption = std::to_string(time.hours().count()) + ":" + std::to_string(time.minutes().count());
}

void FrmMain::Timer1_Timer() {
    // The label never reads like a time with its seconds, so that the test passes at every tick: on purpose,
    // for the alarm is to be checked each second.
    if (LblClock.Caption == timeText(needs_.clock.now().time)) return;
    passOver([&] { windowSteps.checkAlarm(); }, [&] { UpdateClock(); });
}

void FrmMain::cmdFrames_Click(int Index) {
    const std::array frames{&FrameSearch, &FrameOpen, &FrameAlarm, &FrameMail};
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const Place& place = static_cast<int>(i) == Index ? panelPlace : awayPlace;
        frames[i]->Left = place.Left;
        frames[i]->Top = place.Top;
    }
    if (Index == 2) AlarmTPick.Value = needs_.clock.now();
}

void FrmMain::showPanel(int Index) {
    cmdFrames_Click(Index);
    bringUp();
}

void FrmMain::bringUp() {
    setWindowState(WindowStates::normal);
    Show();
}

void FrmMain::Form_MouseMove(long X) {
    const long message = X / twipsPerPixel;
    if (message == tray_messages::leftButtonUp) bringUp();
    if (message == tray_messages::rightButtonDown) PopupMenu(menu("MnuMain"));
}

void FrmMain::CmdMin_Click() {
    setWindowState(WindowStates::minimised);
    setVisible(false);
}

void FrmMain::cmdOptions_Click() {
    PopupMenu(menu("mnuOptionsMenu"));
}

void FrmMain::cmdReadMsg_Click() {
    windowSteps.ReadMail_2();
}

void FrmMain::mnuAbout_Click() {
    needs_.About.setVisible(true);
}

void FrmMain::mnuVersion_Click() {
    // The balloon shows the dots that the voice reads out.
    const std::string point = R"(\Map="point"="."\)";
    passOver([&] {
        needs_.Speak("This is version " + std::to_string(Application::Major) + point +
                     std::to_string(Application::Minor) + point + std::to_string(Application::Revision) +
                     " of Velmora.");
    });
}

void FrmMain::mnuHelp_Click() {
    needs_.Execute(needs_.application.HelpFile());
}

void FrmMain::mnuMyHome_Click() {
    std::string site = needs_.machine.value("Community", "Site");
    if (site.empty()) site = needs_.machine.value("Directory", "Endpoint");
    needs_.Execute(site + "/messenger/Home.asp?User=" + needs_.UserName() + "&UID=" + UID);
}

void FrmMain::mnuMessengerOpen_Click() {
    if (menu("mnuMessengerOpen").Caption == std::string("Open")) return messenger.Show();
    passOver(
        [&] {
            if (messenger.LoggedOn && messenger.LoggedOn()) messenger.LogOut();
        },
        [&] { messenger.Unload(); });
}

void FrmMain::mnuCalender_Click() {
    windowSteps.showCalender();
}

void FrmMain::mnuExit_Click() {
    needs_.AgentQuit();
}

void FrmMain::Form_QueryUnload() {
    needs_.AgentQuit();
}

void FrmMain::Form_Unload() {
    needs_.UnloadForms();
}

void FrmMain::Form_Terminate() {
    needs_.tray.remove();
}

}  // namespace velmora
