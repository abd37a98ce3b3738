#pragma once

#include <functional>
#include <memory>
#include <string>

#include "core/settings.h"
#include "messenger/directory_service.h"
#include "platform/agent_control.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/form.h"
#include "platform/inet.h"

namespace velmora {

/// The wizard of the first run: the user's names and address, the choice of the Outlook commands, and the
/// number that the directory service gives for them.
class frmProfile : public Form {
public:
    struct Needs {
        Settings& settings;
        const std::string& IniFile;
        Dialogs& dialogs;
        Inets& inets;
        DirectoryService directory;
        std::function<bool()> IsConnected;
        std::function<void()> DialUp;
        std::function<AgentCharacter&()> Character;  ///< fails with 91 while there is none
        std::function<void()> AgentVisible;
        std::function<void(long x, long y)> MoveAgentTo;  ///< twips, 20 to the pixel
        Request& RequestExplain;                          ///< takes the wizard's last line
        const std::string& MainKey;
        std::string& UID;       ///< the user's number and nick in clear, for the running program
        std::string& NickName;  ///< see `UID`
    };
    frmProfile(Forms& forms, Needs needs);

    Frame FrameProfile{*this, "FrameProfile", {.Caption = "Profile", .Left = 240, .Top = 240}};
    Label lblProfile{*this,
                     "lblProfile",
                     {.Caption = "Your messenger profile helps other users find you online. Messenger can "
                                 "not log-in to the service without a profile."}};
    Label lblFName{*this, "lblFName", {.Caption = "First Name:"}};
    TextBox txtFName{*this, "txtFName"};
    Label lblLastName{*this, "lblLastName", {.Caption = "Last Name:"}};
    TextBox txtLName{*this, "txtLName"};
    Label lblEMail{*this, "lblEMail", {.Caption = "E-Mail Address:"}};
    TextBox txtEMail{*this, "txtEMail"};
    Label lblNickName{*this, "lblNickName", {.Caption = "Nick Name:"}};
    TextBox txtNickName{*this, "txtNickName"};
    Label lblOutlook{*this,
                     "lblOutlook",
                     {.Caption = "Velmora can help you with common tasks in Outlook do you want to enable "
                                 "these commands?"}};
    Array<OptionButton> optYes{
        *this, "optYes", {{.Caption = "Yes"}, {.Caption = "No"}}, &frmProfile::optYes_Click};
    Label lblDisclaimer{*this,
                        "lblDisclaimer",
                        {.Caption = "Messenger Privacy: Your messenger profile information will not be sold "
                                    "or traded and is used only to provide the messenger service."}};
    TextBox txtUID{*this, "txtUID", {}, &frmProfile::txtUID_Change};
    Button cmdFinish{*this, "cmdFinish", {.Caption = "Finish"}, &frmProfile::cmdFinish_Click};
    StatusBar Status{*this, "Status"};

    /// Neither button is preset: who touches none has chosen no.
    bool OutlookChoice = false;

    void optYes_Click(int Index);
    /// "Finish" checks, stores what was typed, and sends the request; "Done" closes.
    void cmdFinish_Click();
    /// Asks the service for a number; the answer goes to `txtUID`. Returns when it is there, or has failed,
    /// or when the form has been closed meanwhile: then the answer counts for nothing.
    void SendProfile();
    /// The closing steps: stores the number and the nick, and has the character tell.
    void txtUID_Change();

protected:
    void Form_Load() override;
    void Form_Unload() override;

private:
    bool complete();
    void writeProfile();
    void placeCharacter();
    After showFailure(const Failure& failure);
    AgentCharacter& character() const { return needs_.Character(); }

    Needs needs_;
    std::shared_ptr<Inet> inet_;  ///< while the form is loaded
};

}  // namespace velmora
