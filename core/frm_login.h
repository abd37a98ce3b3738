#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/profile.h"
#include "core/settings.h"
#include "core/user_list.h"
#include "platform/controls.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/form.h"

namespace velmora {

/// Decides which profile the program runs with, before anything else of it exists. It drives the program on
/// by calling `Main` itself.
class frmLogin : public Form {
public:
    struct Needs {
        Files& files;
        Settings& settings;
        Dialogs& dialogs;
        std::string applicationFolder;
        std::string& IniFile;  ///< written when a login succeeds
        std::function<void()> Main;
    };
    frmLogin(Forms& forms, Needs needs);

    CheckBox chkDefault{
        *this, "chkDefault", {.Caption = "Use Default (Velmora.ini) Profile"}, &frmLogin::chkDefault_Click};
    Array<Label> lblLabels{*this, "lblLabels", {{.Caption = "&First Name:"}, {.Caption = "&Password:"}}};
    TextBox txtUserName{*this, "txtUserName"};
    TextBox txtPassword{*this, "txtPassword", {.Password = true}};
    Button cmdOK{*this, "cmdOK", {.Caption = "OK"}, &frmLogin::cmdOK_Click};
    Button cmdCancel{*this, "cmdCancel", {.Caption = "Cancel"}, &frmLogin::cmdCancel_Click};

    bool LoginOK = false;
    std::vector<std::string> UserList;
    std::string ListKey;

    void chkDefault_Click();
    void cmdOK_Click();
    void cmdCancel_Click();

protected:
    void Form_Load() override;
    void Form_Terminate() override;

private:
    void logIn();

    Needs needs_;
    velmora::UserList file_;
    bool readWhole_ = true;
};

}  // namespace velmora
