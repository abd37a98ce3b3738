#include "core/frm_login.h"

#include <algorithm>

#include "base/conversions.h"
#include "base/failure.h"
#include "core/crypter.h"

namespace velmora {

frmLogin::frmLogin(Forms& forms, Needs needs)
    : Form(forms, "frmLogin", "Velmora Login"),
      needs_(std::move(needs)),
      file_(needs_.files, path(needs_.applicationFolder, velmora::UserList::fileName)) {}

void frmLogin::Form_Load() {
    ListKey = userListKey;
    UserList.clear();
    readWhole_ = true;
    try {
        if (needs_.files.exists(path(needs_.applicationFolder, velmora::UserList::fileName)))
            UserList = file_.read();
    } catch (const Failure& failure) {
        readWhole_ = false;
        needs_.dialogs.MsgBox(failure.description, "Error loading login dialog.");
    }
}

void frmLogin::cmdOK_Click() {
    guarded(
        [this](const Failure& failure) {
            needs_.dialogs.MsgBox(failure.description, "Error Notice.");
            return After::leave;
        },
        [this] { logIn(); });
}

void frmLogin::logIn() {
    const std::string& name = txtUserName.Text;
    const auto user = std::find_if(UserList.begin(), UserList.end(), [&name](const std::string& entry) {
        // An entry without ":" is meant to fail here: it is compared through a left part of length -1.
        const auto colon = entry.find(':');
        return left(entry, colon == std::string::npos ? -1 : static_cast<std::ptrdiff_t>(colon)) == name;
    });
    if (user == UserList.end()) return;  // a name that is not in the list is met with silence, on purpose

    if (user->substr(name.size() + 1) != txtPassword.Text.get()) {
        needs_.dialogs.MsgBox("Invalid Password, try again!", "Login");
        txtPassword.SetFocus();
        txtPassword.selectAll();
        return;
    }
    LoginOK = true;
    Hide();
    needs_.IniFile = txtUserName.Text.get() + ".ini";
    needs_.Main();
    Unload();
}

void frmLogin::chkDefault_Click() {
    const bool chosen = chkDefault.Value == 1;
    needs_.settings.WriteIni("Options", "Default", chosen ? "True" : "False", defaultProfile);
    if (!chosen) return;
    Hide();
    needs_.Main();
    Unload();
}

void frmLogin::cmdCancel_Click() {
    LoginOK = false;
    Hide();
    Unload();
}

void frmLogin::Form_Terminate() {
    // The list is written anew even if nothing in it has changed. One that could not be read is left alone:
    // the users in it would be lost.
    if (!readWhole_) return;
    passOver([this] { file_.write(UserList); });
}

}  // namespace velmora
