#pragma once

#include <functional>
#include <string>

#include "mail/messages.h"
#include "platform/agent_control.h"
#include "platform/controls.h"
#include "platform/list_controls.h"
#include "platform/menu.h"

namespace velmora {

/// Tells of new mail, lists on the mail panel what there is, and reads it out.
class MailReader {
public:
    struct Needs {
        const MailMessages& messages;
        ImageCombo& comMail;
        Button& cmdReadMsg;
        Menu& mnuEMessages;
        const bool& ReadEntire;                      ///< whether new mail is told of with its body
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void()> showPanel;             ///< the main window, with the mail panel
    };
    explicit MailReader(Needs needs);

    std::string PendingMailText;  ///< the body chosen for reading, empty if none is

    /// Tells of each message that has not been told of. Never fails.
    void AnnounceNewMail();
    /// Lists all messages on the panel. Fails with 6 for more than 32767 of them; the list is empty then.
    void FillMailCombo();
    /// Reads the text out, behind whatever the character is at, and reduces it to what was read. Nothing is
    /// chosen for reading any more. Never fails.
    void ReadMail_2(std::string& text);

    void comMail_Click();
    void cmdReadMsg_Click() { ReadMail_2(PendingMailText); }
    void mnuEMessages_Click() { needs_.showPanel(); }

private:
    void announce(CMessage& message);

    Needs needs_;
};

}  // namespace velmora
