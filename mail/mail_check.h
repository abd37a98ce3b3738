#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "mail/messages.h"
#include "mail/retrieved_text.h"
#include "platform/agent_control.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/menu.h"
#include "platform/winsock.h"

namespace velmora {

/// Where the dialogue with the mail server stands.
enum class MailStates : std::int32_t {
    MailConnect = 0,  ///< the greeting is awaited
    MailUser = 1,
    MailPass = 2,
    MailStat = 3,
    MailRetr = 4,
    MailQuit = 6,
};

/// The check of one mailbox: a plain dialogue, driven by what the server sends. It has no time-outs, deletes
/// nothing, and always fetches from message 1 on; a lost connection is silent until the next check.
class MailCheck {
public:
    struct Needs {
        Winsocks& winsocks;
        Dialogs& dialogs;
        TextBox& TxtServer;
        TextBox& TxtUser;
        TextBox& TxtPass;
        Timer& TmrMail;
        Menu& mnuCheckMail;
        const std::int16_t& MailInterval;            ///< minutes between checks
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<bool()> IsConnected;
        std::function<void()> checkFavourites;  ///< once in the program's life, ahead of the first check
        std::function<void()> AnnounceNewMail;
        std::function<void()> FillMailCombo;
        std::function<void()> showMainWindow;
    };
    explicit MailCheck(Needs needs);

    MailStates MailState = MailStates::MailConnect;
    velmora::MailMessages MailMessages;
    std::shared_ptr<CMessage> MailCurrentMessage;  ///< while it is being built
    std::int16_t MailTickCount = 0;                ///< minutes since the last check
    bool FavouritesChecked = false;
    int MailLoopIndex = 0;  ///< one counter for the loop over the favourites and the removal of messages

    std::int16_t MailCount = 0;
    /// How many messages have been asked for, over all sessions: it is never set back, and meant so. A later
    /// session compares the higher number with its count.
    std::int16_t MailFetched = 0;
    RetrievedText MailBuffer;  ///< outlives a session that broke off

    /// Begins a session, whether or not one is under way. Never fails.
    void Check_Mail();
    /// The minutes since the last check count anew, and the next check looks at the favourites.
    void clearMailTimer();
    void mnuCheckMail_Click();
    /// One tick a minute. Fails with 6 after 32767 ticks without a check.
    void TmrMail_Timer();
    void Winsock_DataArrival();

private:
    using Action = void (MailCheck::*)(const std::string& reply);
    static Action actionOf(MailStates state);

    void converse();
    void connected(const std::string& reply);
    void userAccepted(const std::string& reply);
    void passAccepted(const std::string& reply);
    void counted(const std::string& reply);
    void retrieved(const std::string& reply);
    void finished(const std::string& reply);

    void reportNothingNew();
    void removeMessages();
    void keepMessage();
    void refuse(const std::string& reply);
    void giveUp();
    void send(std::string_view command);

    Needs needs_;
    const std::unique_ptr<TcpWinsock> Winsock_;
};

}  // namespace velmora
