#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "character/character.h"
#include "character/command_lists.h"
#include "core/step.h"
#include "platform/agent_control.h"
#include "platform/dialogs.h"

namespace velmora {

/// What follows a command that the user has picked or spoken, and a recognition that has failed.
class CommandDispatch {
public:
    struct Needs {
        AgentControl& AgentCtrl;
        CharacterHost& host;
        Dialogs& dialogs;
        const CommandLists& lists;
        std::function<void(const std::string&)> Execute;
        std::function<void(std::string_view menu)> popUp;  ///< a menu of the main window, by its name
        std::function<void()> bringUpMain;                 ///< the main window, at its normal size
    };
    explicit CommandDispatch(Needs needs);

    /// What the other subsystems do for a command.
    struct Actions {
        Step mnuAbout_Click;
        Step mnuOptions_Click;
        Step showCalender;
        Step mnuCalculator_Click;
        Step mnuCDPlayer_Click;
        Step mnuNotepad_Click;
        Step mnuWordpad_Click;
        Step startWord;
        Step newDocument;
        Step Check_Mail;
        Step MnuEMail_Click;
        Step mnuMessengerOpen_Click;
        Step LogIn;
        Step LogOut;
        Step tellJoke;
        Step singSong;
        Step giveTip;
        std::function<void(int index)> cmdFrames_Click = [](int) {};
        std::function<bool()> LoggedOn = [] { return false; };
    } actions;

    std::string LastVoice;   ///< the words of the last command, kept and not read
    int BadResultCount = 0;  ///< how many recognitions have failed in the program's life, at most 3

    /// One more excuse; after the second it listens again, and after that it only stops listening.
    void BadResult();

private:
    struct Row;
    static std::span<const Row> chain();

    void AgentCtrl_Command(const AgentUserInput& input);
    void follow(const std::string& Name);
    bool launch(const CommandList& list, const std::string& Name);
    void showFrame(int index);
    void logOn();
    void logOff();

    Needs needs_;
};

}  // namespace velmora
