#pragma once

#include <string>

#include "character/character.h"
#include "character/command_lists.h"
#include "character/dispatch.h"
#include "core/frm_about.h"
#include "core/frm_login.h"
#include "core/frm_main.h"
#include "core/frm_splash.h"
#include "core/settings.h"
#include "core/start_up.h"
#include "desktop/accessories.h"
#include "desktop/dial_up.h"
#include "desktop/execute.h"
#include "desktop/launch_lists.h"
#include "desktop/open_panel.h"
#include "desktop/web_search.h"
#include "mail/favourites_check.h"
#include "mail/mail_check.h"
#include "mail/mail_reader.h"
#include "mail/mail_settings.h"
#include "options/frm_options.h"
#include "platform/form.h"
#include "platform/platform.h"

namespace velmora {

/// One running copy of the program: it owns every form and subsystem and connects them. Two of them can live
/// side by side, each on a platform of its own.
class Program {
public:
    /// The platform outlives the program.
    explicit Program(Platform& platform);

    /// Runs `Main` in a turn of its own.
    void start();

    /// The orderly end, once the loop has ended: each form's terminate event.
    void terminate() { forms_.terminate(); }

    Forms& forms() { return forms_; }
    CharacterHost& character() { return character_; }
    FrmMain& main() { return main_; }
    frmLogin& login() { return login_; }

    CommandDispatch& dispatch() { return dispatch_; }
    CommandLists& commandLists() { return commandLists_; }
    FrmOptions& options() { return options_; }
    MailSettings& mailSettings() { return mailSettings_; }
    MailCheck& mailCheck() { return mailCheck_; }
    MailReader& mailReader() { return mailReader_; }
    LaunchLists& launchLists() { return launchLists_; }
    WebSearch& webSearch() { return webSearch_; }
    DialUpConnection& dialUp() { return dialUp_; }

private:
    void connectCommands();

    Platform& platform_;
    Forms forms_;
    Settings settings_;
    std::string IniFile_;
    FrmSplash splash_;
    frmLogin login_;
    Execute execute_;
    frmAbout about_;
    FrmMain main_;
    CharacterHost character_;
    FrmOptions options_;
    MailSettings mailSettings_;
    MailCheck mailCheck_;
    FavouritesCheck favouritesCheck_;
    MailReader mailReader_;
    LaunchLists launchLists_;
    Accessories accessories_;
    OpenPanel openPanel_;
    WebSearch webSearch_;
    DialUpConnection dialUp_;
    CommandLists commandLists_;
    CommandDispatch dispatch_;
    StartUp startUp_;
};

}  // namespace velmora
