#include "character/character.h"

#include <array>
#include <cmath>
#include <utility>

#include "character/manners.h"
#include "character/part_of_day.h"
#include "core/error_report.h"

namespace velmora {
namespace {

constexpr const char* defaultId = "default";
constexpr int english = 1033;
constexpr double twipsPerPixel = 20;
constexpr int besideMouse = 70;  // pixels to the left of the mouse
constexpr int besideField = 70;  // pixels off the corner of a field

constexpr std::array tour{
    "My main menu. lists all the different ways I can help you.",
    "Open my menu by right clicking me.",
    "To close my menu select an option or press the escape key.",
    "If I'm in your way just click and hold the left mouse button. Then you can drag me somewhere else on "
    "the desktop.",
    "Use the hide command on my menu to make me hide. You can double click my icon on the taskbar to make me "
    "come back.",
};

}  // namespace

CharacterHost::CharacterHost(Needs needs) : needs_(std::move(needs)) {
    needs_.AgentCtrl.RequestComplete = [this](const Request&) { AgentCtrl_RequestComplete(); };
    needs_.AgentCtrl.Click = [this](const AgentClick& click) { AgentCtrl_Click(click); };
    needs_.AgentCtrl.DblClick = [this](const AgentClick& click) { AgentCtrl_DblClick(click); };
    needs_.mnuHide.Click.connect([this] { mnuHide_Click(); });
    needs_.mnuACo.Click.connect([this] { needs_.AgentCtrl.setPropertySheetVisible(true); });
    needs_.mnuChangeAgent.Click.connect([this] { needs_.AgentCtrl.ShowDefaultCharacterProperties(); });
}

void CharacterHost::SetAgent() {
    guarded(
        [this](const Failure& failure) {
            if (failure.number == 0) return After::leave;
            if (failure.number != errors::objectNotSet) return After::next;
            showStartUpBox(needs_.dialogs);
            return After::leave;
        },
        [&] { needs_.AgentCtrl.CharactersLoad(defaultId); },
        [&] { Character.set(needs_.AgentCtrl.CharactersItem(defaultId)); }, [&] { CharacterLoaded = true; },
        [&] { Character->setLanguageID(english); }, [&] { steps.InitCommands(); },
        [&] { Character->Commands().setCaption("Velmora"); },
        [&] { Character->Commands().setVoice("Velmora"); }, [&] { Character->setAutoPopupMenu(false); },
        [&] { GreetUser(); });
}

void CharacterHost::GreetUser() {
    guarded(
        [this](const Failure& failure) {
            needs_.dialogs.MsgBox(
                "An Error Occured starting the Agent.\nError number: " + std::to_string(failure.number) +
                    "\nError Description: " + failure.description,
                "Velmora");
            return After::leave;
        },
        [&] { UserName = needs_.settings.ReadIni("User", "Name", missingValue, needs_.IniFile); },
        [&] { Character->Show(); },
        [&] { UserName.empty() || UserName == missingValue ? introduce() : greet(); });
}

void CharacterHost::introduce() {
    Character->Play("Greet");
    Character->Speak("Hi my name is " + Character->Name() + ". Welcome to Velmora.");
    Character->Play("RestPose");
    Character->Play("Think");
    RequestProfile = Character->Speak("We'd better set up your user profile");
}

void CharacterHost::greet() {
    const Greeting greeting = greetingOf(Character->Name(), PartOfDay(needs_.clock), UserName);
    if (!greeting.animation.empty()) Character->Play(std::string(greeting.animation));
    Character->Speak(greeting.spoken);
    Character->Play("RestPose");
    steps.CheckTodaysApps();
}

void CharacterHost::AgentQuit() {
    guarded(
        [this](const Failure&) {
            needs_.UnloadForms();
            return After::leave;
        },
        [&] {
            Character->StopAll();
            const Greeting farewell = farewellOf(Character->Name());
            if (!farewell.animation.empty()) Character->Play(std::string(farewell.animation));
            Character->Speak(farewell.spoken);
            RequestQuit = Character->Hide();
        });
}

// Which request has ended is not looked at, only which of the slots are filled. Nothing but the end of the
// program empties `RequestBadResult`: from the first failed recognition on, it is meant to capture every
// later completion.
void CharacterHost::AgentCtrl_RequestComplete() {
    if (RequestBadResult) return passOver([&] { Character->Speak("Better try that again."); });
    if (RequestQuit) return quitCompleted();
    if (RequestProfile) return passOver([&] { steps.showProfile(); }, [&] { RequestProfile = nullptr; });
    if (RequestExplain) passOver([&] { speakTour(); }, [&] { RequestExplain = nullptr; });
    if (RequestReply) passOver([&] { steps.popUpReplyMenu(); }, [&] { RequestReply = nullptr; });
}

void CharacterHost::quitCompleted() {
    passOver([&] { RequestBadResult = nullptr; }, [&] { needs_.AgentCtrl.CharactersUnload(defaultId); },
             [&] { needs_.TmrMail.Enabled = false; }, [&] { needs_.UnloadForms(); });
}

void CharacterHost::speakTour() {
    for (const char* line : tour) {
        passOver([&] { Character->Speak(line); });
    }
}

void CharacterHost::AgentCtrl_Click(const AgentClick& click) {
    passOver(
        [&] {
            if (click.button == 1) Character->StopAll();
        },
        [&] {
            if (click.button == 2) needs_.popUpMainMenu();
        });
}

void CharacterHost::AgentCtrl_DblClick(const AgentClick& click) {
    passOver([&] {
        if (click.button == 1) Character->Listen(true);
    });
}

void CharacterHost::mnuHide_Click() {
    Character->Visible() ? Character->Hide() : Character->Show();
}

void CharacterHost::AgentVisible() {
    passOver([&] {
        if (!Character->Visible()) Character->Show();
    });
}

void CharacterHost::MoveToMouse() {
    passOver([&] {
        const ScreenPoint mouse = needs_.pointer.position();
        Character->MoveTo(mouse.x - besideMouse, mouse.y);
    });
}

void CharacterHost::MoveAgentTo() {
    const auto pixels = [](long twips) {  // a half goes to the even neighbour
        return std::lrint(static_cast<double>(twips) / twipsPerPixel + besideField);
    };
    passOver([&] { AgentX = pixels(AgentX); }, [&] { AgentY = pixels(AgentY); },
             [&] { Character->MoveTo(static_cast<int>(AgentX), static_cast<int>(AgentY)); });
}

void CharacterHost::clearRequests() {
    for (Request* slot : {&RequestBadResult, &RequestQuit, &RequestProfile, &RequestExplain, &RequestReply}) {
        *slot = nullptr;
    }
}

}  // namespace velmora
