#include "messenger/frm_profile.h"

#include <algorithm>
#include <utility>

#include "base/conversions.h"
#include "base/failure.h"
#include "core/crypter.h"
#include "messenger/transfer_status.h"

namespace velmora {
namespace {

// In twips. The window opens near a corner of the screen, so that the character has room beside it.
constexpr int windowLeft = 1200;
constexpr int windowTop = 900;
constexpr int frameWidth = 7200;

/// What a text box takes of a text. A number is short; what a server may send in its place is not.
constexpr std::size_t longestText = 65535;

}  // namespace

frmProfile::frmProfile(Forms& forms, Needs needs)
    : Form(forms, "frmProfile", "Profile"), needs_(std::move(needs)) {}

void frmProfile::Form_Load() {
    passOver(
        [&] {
            inet_ = needs_.inets.create();
            inet_->StateChanged = [this](TransferState state) {
                if (const auto text = transferStatus(state)) Status.Text = std::string(*text);
            };
        },
        [&] { placeCharacter(); }, [&] { character().Play("GestureDown"); },
        [&] { character().Speak("This information helps me notify you when updates are available."); },
        [&] { character().Play("RestPose"); });
}

void frmProfile::placeCharacter() {
    constexpr int windowTwips = Form::twipsToThePixel;
    constexpr int characterTwips = 20;
    const auto onScreen = [](int twips) { return long{twips} * characterTwips / windowTwips; };
    Left = windowLeft;
    Top = windowTop;
    needs_.MoveAgentTo(onScreen(Left + FrameProfile.Left + frameWidth), onScreen(Top + FrameProfile.Top));
}

void frmProfile::Form_Unload() {
    // A transfer may be under way: it goes on for nobody, and its `SendProfile` finds the form without it.
    if (!inet_) return;
    inet_->StateChanged = {};
    forms().loop().retire(std::exchange(inet_, nullptr));
}

void frmProfile::optYes_Click(int) {
    if (optYes(1).Value) {
        optYes(0).Value = false;
        OutlookChoice = false;
    } else if (optYes(0).Value) {
        optYes(1).Value = false;
        OutlookChoice = true;
    }
}

After frmProfile::showFailure(const Failure& failure) {
    needs_.dialogs.MsgBox(std::to_string(failure.number) + "\n" + failure.description, "Error!",
                          BoxIcon::exclamation);
    return After::leave;
}

void frmProfile::cmdFinish_Click() {
    guarded([this](const Failure& failure) { return showFailure(failure); },
            [&] {
                if (cmdFinish.Caption == std::string("Done")) return Unload();
                if (!complete()) return;
                writeProfile();
                SendProfile();
            });
}

bool frmProfile::complete() {
    if (txtFName.Text.get().empty()) {
        character().Play("Confused");
        character().Speak("I can't see your name.");
        character().Play("Restpose");
        character().Speak("Please enter your name.");
        txtFName.SetFocus();
        return false;
    }
    for (const TextBox* field : {&txtLName, &txtEMail, &txtNickName}) {
        if (!field->Text.get().empty()) continue;
        character().Speak("Please fill in all the fields for your profile.");
        return false;
    }
    return true;
}

// Also before the service has answered: a user whose request fails is known at the next start all the same,
// on purpose, though without a number.
void frmProfile::writeProfile() {
    const auto write = [this](std::string_view section, std::string_view key, std::string_view value) {
        needs_.settings.WriteIni(section, key, value, needs_.IniFile);
    };
    write("User", "Name", txtFName.Text.get());
    write("User", "LastName", txtLName.Text.get());
    write("User", "EMail", txtEMail.Text.get());
    write("User", "OutlookEnabled", booleanText(OutlookChoice));
    for (const char* key : {"Server", "User", "Pass", "Interval"}) write("EMail", key, "");
}

void frmProfile::SendProfile() {
    const std::shared_ptr<Inet> inet = inet_;
    const auto closed = [&] { return inet != inet_; };
    guarded([&](const Failure& failure) { return closed() ? After::leave : showFailure(failure); },
            [&] {
                const std::string url = needs_.directory.createProfile(
                    txtFName.Text.get(), txtLName.Text.get(), txtEMail.Text.get(), txtNickName.Text.get());
                if (!needs_.IsConnected()) needs_.DialUp();
                while (!closed() && !needs_.IsConnected()) forms().loop().doEvents();
                if (closed()) return;
                if (!inet) throw Failure(errors::objectNotSet);
                inet->URL = url;
                character().Play("Processing");
                std::string answer = inet->OpenURL();
                answer.resize(std::min(answer.size(), longestText));
                if (!closed()) txtUID.Text = std::move(answer);
            });
}

void frmProfile::txtUID_Change() {
    const auto write = [this](std::string_view key, std::string_view value) {
        needs_.settings.WriteIni("Messenger", key, Encipher(value, needs_.MainKey), needs_.IniFile);
    };
    // The character comes out and is stopped right after: the `Show` is meant to be dropped with the rest.
    passOver(
        [&] { cmdFinish.Caption = "Done"; }, [&] { write("UID", txtUID.Text.get()); },
        [&] { write("NickName", txtNickName.Text.get()); }, [&] { needs_.UID = txtUID.Text; },
        [&] { needs_.NickName = txtNickName.Text; }, [&] { needs_.AgentVisible(); },
        [&] { character().StopAll(); }, [&] { character().Play("Wave"); },
        [&] { character().Speak("Hi " + txtFName.Text.get()); }, [&] { character().Play("Pleased"); },
        [&] {
            character().Speak("I have created a messenger profile for you. Your unique ID number (UID) is " +
                              txtUID.Text.get());
        },
        [&] { character().Speak("You can give your UID number to your friends so they can chat with you."); },
        [&] { character().Play("Explain"); },
        [&] { character().Speak("I'll quickly show you what I can do."); },
        [&] { needs_.RequestExplain = character().Play("RestPose"); });
}

}  // namespace velmora
