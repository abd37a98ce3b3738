#pragma once

#include <functional>
#include <string>

#include "character/object_ref.h"
#include "core/settings.h"
#include "core/step.h"
#include "platform/agent_control.h"
#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/menu.h"
#include "platform/pointer.h"

namespace velmora {

/// The character's place in the program: how it comes, greets, moves, is clicked and takes its leave, and
/// what follows when something that it was asked for has ended.
class CharacterHost {
public:
    struct Needs {
        AgentControl& AgentCtrl;
        Settings& settings;
        const std::string& IniFile;
        Clock& clock;
        Dialogs& dialogs;
        Pointer& pointer;
        Timer& TmrMail;
        Menu& mnuACo;
        Menu& mnuChangeAgent;
        Menu& mnuHide;
        std::function<void()> UnloadForms;
        std::function<void()> popUpMainMenu;
    };
    explicit CharacterHost(Needs needs);

    /// What other subsystems do at their moment; see the routine that each is named after.
    struct Steps {
        Step InitCommands;     ///< `SetAgent`
        Step CheckTodaysApps;  ///< `GreetUser`, for a user who is known
        Step showProfile;      ///< the end of `RequestProfile`
        Step popUpReplyMenu;   ///< the end of `RequestReply`
    } steps;

    /// Empty until `SetAgent` has run; using it then fails with 91.
    ObjectRef<AgentCharacter> Character;
    bool CharacterLoaded = false;
    std::string UserName;

    // Each is the request whose end is waited for, if any.
    Request RequestBadResult;  ///< the last excuse of a failed recognition
    Request RequestQuit;       ///< the `Hide` of `AgentQuit`
    Request RequestProfile;    ///< the first-run line that leads to the wizard
    Request RequestExplain;    ///< the wizard's last line
    Request RequestReply;      ///< the question whether to reply

    /// A position for `MoveAgentTo`, in twips before it and in pixels after it.
    long AgentX = 0;
    long AgentY = 0;

    void SetAgent();
    void GreetUser();
    /// Begins the end of the program: a farewell, and `Hide`. Whatever fails in it ends the program at once.
    void AgentQuit();
    /// Brings the character out if it is hidden.
    void AgentVisible();
    /// Beside the mouse.
    void MoveToMouse();
    /// To `AgentX`, `AgentY`.
    void MoveAgentTo();
    void clearRequests();

private:
    void AgentCtrl_RequestComplete();
    void AgentCtrl_Click(const AgentClick& click);
    void AgentCtrl_DblClick(const AgentClick& click);
    void mnuHide_Click();
    void introduce();
    void greet();
    void speakTour();
    void quitCompleted();

    Needs needs_;
};

}  // namespace velmora
