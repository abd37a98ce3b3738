#pragma once

#include <functional>
#include <string>

#include "core/frm_login.h"
#include "core/frm_main.h"
#include "core/frm_splash.h"
#include "core/profile.h"
#include "core/settings.h"
#include "core/step.h"
#include "platform/application.h"
#include "platform/form.h"

namespace velmora {

/// The program's spine in time: how it starts, and how all of it is taken down.
class StartUp {
public:
    struct Needs {
        Application& application;
        Settings& settings;
        Forms& forms;
        frmLogin& Login;
        FrmSplash& Splash;
        velmora::FrmMain& Main;
        std::function<void()> SetAgent;
        Step releaseWordApp;
    };
    StartUp(std::string& iniFile, Needs needs) : IniFile(iniFile), needs_(std::move(needs)) {}

    /// The settings file in use, by its name in the application folder.
    std::string& IniFile;

    /// The entry point. With no default profile it leaves the program to the login dialog, which calls it
    /// again.
    void Main();

    /// Unloads all forms, and so ends the program. Called again meanwhile it finds nothing more to do.
    void UnloadForms();

private:
    Needs needs_;
};

}  // namespace velmora
