#include "program/program.h"

#include <algorithm>

#include "character/vocabulary.h"

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
      main_(forms_, {.settings = settings_,
                     .IniFile = IniFile_,
                     .clock = platform.clock,
                     .dialogs = platform.dialogs,
                     .tray = platform.tray,
                     .machine = platform.machine,
                     .Execute = [this](const std::string& file) { Execute(file); },
                     .AgentQuit = [this] { character_.AgentQuit(); },
                     .UnloadForms = [this] { startUp_.UnloadForms(); }}),
      character_({.AgentCtrl = platform.agent,
                  .settings = settings_,
                  .IniFile = IniFile_,
                  .clock = platform.clock,
                  .dialogs = platform.dialogs,
                  .pointer = platform.pointer,
                  .TmrMail = main_.TmrMail,
                  .mnuACo = main_.mnuACo,
                  .mnuChangeAgent = main_.mnuChangeAgent,
                  .mnuHide = main_.mnuHide,
                  .UnloadForms = [this] { startUp_.UnloadForms(); },
                  .popUpMainMenu = [this] { main_.PopupMenu(main_.MnuMain); }}),
      dispatch_({.AgentCtrl = platform.agent,
                 .host = character_,
                 .dialogs = platform.dialogs,
                 .lists = launchLists_,
                 .Execute = [this](const std::string& file) { Execute(file); },
                 .popUp = [this](std::string_view menu) { popUp(menu); },
                 .bringUpMain = [this] { bringUpMain(); }}),
      startUp_(IniFile_, {.application = platform.application,
                          .settings = settings_,
                          .forms = forms_,
                          .Login = login_,
                          .Splash = splash_,
                          .Main = main_,
                          .SetAgent = [this] { character_.SetAgent(); },
                          .releaseWordApp = {}}) {
    main_.steps.clearRequests = [this] { character_.clearRequests(); };
    character_.steps.InitCommands = [this] {
        passOver([this] { InitCommands(character_.Character->Commands(), launchLists_); });
    };
}

void Program::start() {
    platform_.loop.post([this] { startUp_.Main(); });
}

void Program::Execute(const std::string& file) {
    platform_.shell.open(file, {});
}

void Program::popUp(std::string_view menu) {
    const auto found = std::ranges::find(main_.menus(), menu, &Menu::name);
    if (found != main_.menus().end()) main_.PopupMenu(**found);
}

void Program::bringUpMain() {
    main_.setWindowState(WindowStates::normal);
    main_.Show();
}

}  // namespace velmora
