#include "program/program.h"

namespace velmora {

Program::Program(Platform& platform)
    : platform_(platform),
      forms_(platform.loop),
      settings_(platform.settings, platform.application.Path()),
      splash_(forms_),
      login_(forms_, {.files = platform.files,
                      .settings = settings_,
                      .dialogs = platform.dialogs,
                      .applicationFolder = platform.application.Path(),
                      .IniFile = IniFile_,
                      .Main = [this] { startUp_.Main(); }}),
      about_(forms_,
             {.machine = platform.machine, .Execute = [this](const std::string& file) { Execute(file); }}),
      main_(forms_, {.application = platform.application,
                     .settings = settings_,
                     .IniFile = IniFile_,
                     .clock = platform.clock,
                     .dialogs = platform.dialogs,
                     .tray = platform.tray,
                     .machine = platform.machine,
                     .About = about_,
                     .Execute = [this](const std::string& file) { Execute(file); },
                     .Speak = [this](const std::string& text) { character_.Character->Speak(text); },
                     .UserName = [this] { return character_.UserName; },
                     .AgentQuit = [this] { character_.AgentQuit(); },
                     .UnloadForms = [this] { startUp_.UnloadForms(); }}),
      character_({.AgentCtrl = platform.agent,
                  .settings = settings_,
                  .IniFile = IniFile_,
                  .clock = platform.clock,
                  .dialogs = platform.dialogs,
                  .pointer = platform.pointer,
                  .TmrMail = main_.TmrMail,
                  .mnuACo = main_.menu("mnuACo"),
                  .mnuChangeAgent = main_.menu("mnuChangeAgent"),
                  .mnuHide = main_.menu("mnuHide"),
                  .UnloadForms = [this] { startUp_.UnloadForms(); },
                  .popUpMainMenu = [this] { main_.PopupMenu(main_.menu("MnuMain")); }}),
      startUp_(IniFile_, {.application = platform.application,
                          .settings = settings_,
                          .forms = forms_,
                          .Login = login_,
                          .Splash = splash_,
                          .Main = main_,
                          .SetAgent = [this] { character_.SetAgent(); },
                          .releaseWordApp = {}}) {
    main_.steps.clearRequests = [this] { character_.clearRequests(); };
}

void Program::start() {
    platform_.loop.post([this] { startUp_.Main(); });
}

void Program::Execute(const std::string& file) {
    platform_.shell.open(file, {});
}

}  // namespace velmora
