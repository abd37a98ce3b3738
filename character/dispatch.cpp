#include "character/dispatch.h"

#include <array>
#include <cstddef>
#include <utility>

#include "base/failure.h"

namespace velmora {
namespace {

/// The highest confidence that counts as a failed recognition, whatever a command asks for itself.
constexpr int failedConfidence = -60;

constexpr int searchFrame = 0;
constexpr int openFrame = 1;
constexpr int alarmFrame = 2;

struct Excuse {
    const char* animation;
    const char* spoken;
};

constexpr std::array excuses{
    Excuse{"DontRecognize", "Huh?|What?|Say Again?"},
    Excuse{"Decline", "Can you say that again?|What was that?|once more please."},
};

void showFailure(Dialogs& dialogs, const Failure& failure, const char* title, BoxIcon icon) {
    dialogs.MsgBox(std::to_string(failure.number) + "\n" + failure.description, title, icon);
}

}  // namespace

/// A command and what it does, or in its place the ten rows of a list.
struct CommandDispatch::Row {
    std::string_view name = {};
    void (*act)(CommandDispatch&) = nullptr;
    CommandList CommandLists::*list = nullptr;
};

CommandDispatch::CommandDispatch(Needs needs) : needs_(std::move(needs)) {
    needs_.AgentCtrl.Command = [this](const AgentUserInput& input) { AgentCtrl_Command(input); };
}

// The order decides: a list's entry with the name of a command further down takes its place.
std::span<const CommandDispatch::Row> CommandDispatch::chain() {
    using Self = CommandDispatch;
    static constexpr std::array rows{
        Row{"General", [](Self& self) { self.needs_.popUp("mnuGeneral"); }},
        Row{"Accessories", [](Self& self) { self.needs_.popUp("mnuAccessories"); }},
        Row{"My Office", [](Self& self) { self.needs_.popUp("mnuMyOffice"); }},
        Row{"Internet", [](Self& self) { self.needs_.popUp("mnuWeb"); }},
        Row{"MovetoMouse", [](Self& self) { self.needs_.host.MoveToMouse(); }},
        // On purpose: neither this name nor that of the command, "ACO", does anything.
        Row{"aco", [](Self&) {}},
        Row{"ChangeAgent", [](Self& self) { self.needs_.AgentCtrl.ShowDefaultCharacterProperties(); }},
        Row{"About", [](Self& self) { self.actions.mnuAbout_Click(); }},
        Row{"Options", [](Self& self) { self.actions.mnuOptions_Click(); }},
        Row{"Alarm", [](Self& self) { self.showFrame(alarmFrame); }},
        Row{"Open File", [](Self& self) { self.showFrame(openFrame); }},
        Row{"Calender", [](Self& self) { self.actions.showCalender(); }},
        Row{"Calculator", [](Self& self) { self.actions.mnuCalculator_Click(); }},
        Row{"CD Player", [](Self& self) { self.actions.mnuCDPlayer_Click(); }},
        Row{"Notepad", [](Self& self) { self.actions.mnuNotepad_Click(); }},
        Row{"Wordpad", [](Self& self) { self.actions.mnuWordpad_Click(); }},
        Row{"Word", [](Self& self) { self.actions.startWord(); }},
        Row{"New Document", [](Self& self) { self.actions.newDocument(); }},
        // On purpose: only the menu's entry reads a selection.
        Row{"Read Selection", [](Self&) {}},
        Row{"Search the Internet", [](Self& self) { self.showFrame(searchFrame); }},
        Row{"Check Mail", [](Self& self) { self.actions.Check_Mail(); }},
        Row{"NewMail", [](Self& self) { self.actions.MnuEMail_Click(); }},
        Row{.list = &CommandLists::favourites},
        Row{.list = &CommandLists::office},
        Row{"Messenger", [](Self& self) { self.actions.mnuMessengerOpen_Click(); }},
        Row{"Messenger Log On", [](Self& self) { self.logOn(); }},
        Row{"Messenger Log Off", [](Self& self) { self.logOff(); }},
        Row{"Tell joke", [](Self& self) { self.actions.tellJoke(); }},
        Row{"Sing song", [](Self& self) { self.actions.singSong(); }},
        Row{"Tip", [](Self& self) { self.actions.giveTip(); }},
    };
    return rows;
}

void CommandDispatch::AgentCtrl_Command(const AgentUserInput& input) {
    LastVoice = input.Voice;
    if (input.Confidence <= failedConfidence) return BadResult();
    guarded(
        [this](const Failure& failure) {
            showFailure(needs_.dialogs, failure, "Agent Command", BoxIcon::none);
            return After::leave;
        },
        [&] { follow(input.Name); });
}

void CommandDispatch::follow(const std::string& Name) {
    for (const Row& row : chain()) {
        if (row.list && launch(needs_.lists.*row.list, Name)) return;
        if (row.act && row.name == Name) return row.act(*this);
    }
}

bool CommandDispatch::launch(const CommandList& list, const std::string& Name) {
    if (!list.name) return false;
    for (int row = 0; row < CommandList::rows; ++row) {
        if (list.name(row) != Name) continue;
        needs_.Execute(list.target(row));
        return true;
    }
    return false;
}

void CommandDispatch::showFrame(int index) {
    actions.cmdFrames_Click(index);
    needs_.bringUpMain();
}

void CommandDispatch::logOn() {
    if (actions.LoggedOn()) {
        needs_.host.Character->Speak("You are already logged into the messenger service " +
                                     needs_.host.UserName);
        return;
    }
    actions.mnuMessengerOpen_Click();
    actions.LogIn();
}

void CommandDispatch::logOff() {
    if (!actions.LoggedOn()) {
        needs_.host.Character->Speak("You are not logged into the messenger service right now.");
        return;
    }
    actions.LogOut();
}

void CommandDispatch::BadResult() {
    auto& host = needs_.host;
    guarded(
        [this](const Failure& failure) {
            showFailure(needs_.dialogs, failure, "Bad Result", BoxIcon::exclamation);
            return After::leave;
        },
        [&] {
            host.Character->Listen(false);
            // Nothing ever sets the count back: it is meant to span the whole life of the program.
            const auto count = static_cast<std::size_t>(BadResultCount);
            if (count > excuses.size()) return;
            ++BadResultCount;
            if (count == excuses.size()) {
                host.Character->Play("StartListening");
                host.Character->Listen(true);
            } else {
                host.Character->Play(excuses.at(count).animation);
                host.RequestBadResult = host.Character->Speak(excuses.at(count).spoken);
            }
        });
}

}  // namespace velmora
