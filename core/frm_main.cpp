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

Reaction reactionTo(long number) {
    const auto* found = std::find_if(loadFailures.begin(), loadFailures.end(),
                                     [number](const LoadFailure& row) { return row.number == number; });
    return found == loadFailures.end() ? Reaction::report : found->reaction;
}

}  // namespace

FrmMain::FrmMain(Forms& forms, Needs needs) : Form(forms, "FrmMain", "Velmora"), needs_(std::move(needs)) {
    needs_.tray.onClick = [this] { bringUp(); };
    needs_.tray.onRightClick = [this] { PopupMenu(MnuMain); };
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
            if (!outlook) steps.hideOutlookMenus();
        },
        [&] { UpdateClock(); }, [&] { steps.clearAlarm(); }, [&] { steps.ReadMailSettings(); },
        [&] { steps.SetAccessoriesMnu(); }, [&] { steps.loadLaunchLists(); }, [&] { steps.clearRequests(); },
        [&] { steps.loadJokesAndTips(); }, [&] { TimerJoke.Enabled = setting("Options", "Jokes") == "On"; },
        [&] { steps.clearMailTimer(); }, [&] { needs_.tray.add("Velmora"); }, [&] { steps.buildSongList(); },
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
    UpdateClock();
}

void FrmMain::bringUp() {
    setWindowState(WindowStates::normal);
    Show();
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
