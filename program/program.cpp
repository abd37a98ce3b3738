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
      execute_(platform.shell),
      about_(forms_, {.machine = platform.machine, .Execute = execute_}),
      main_(forms_, {.application = platform.application,
                     .settings = settings_,
                     .IniFile = IniFile_,
                     .clock = platform.clock,
                     .dialogs = platform.dialogs,
                     .tray = platform.tray,
                     .machine = platform.machine,
                     .About = about_,
                     .Execute = execute_,
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
      options_(forms_, {.mnuOffice = [this](int index) -> Menu& { return main_.menu("mnuOffice", index); },
                        .mnuCustom = [this](int index) -> Menu& { return main_.menu("mnuCustom", index); },
                        .LoadOfficeList = [this] { launchLists_.LoadOfficeList(); },
                        .LoadFavouritesList = [this] { launchLists_.LoadFavouritesList(); }}),
      launchLists_(
          {.files = platform.files,
           .applicationFolder = platform.application.Path(),
           .office = {.names = options_.ComOffice,
                      .targets = options_.comOfficeCommands,
                      .entry = [this](int index) -> Menu& { return main_.menu("mnuOffice", index); },
                      .carry = [this] { options_.Set_Office(); }},
           .favourites = {.names = options_.comFavourites,
                          .targets = options_.comFavouriteURL,
                          .entry = [this](int index) -> Menu& { return main_.menu("mnuCustom", index); },
                          .carry = [this] { options_.Set_Favourites(); }},
           .Execute = execute_}),
      accessories_({.menu = [this](std::string_view name) -> Menu& { return main_.menu(name); },
                    .machine = platform.machine,
                    .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                    .Execute = execute_}),
      openPanel_({.txtOpenFile = main_.txtOpenFile,
                  .cmdOpenBrowse = main_.cmdOpenBrowse,
                  .cmdOpenGo = main_.cmdOpenGo,
                  .mnuOpenFile = main_.menu("mnuOpenFile"),
                  .dialogs = main_.fileDialogs,
                  .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                  .Execute = execute_,
                  .show = [this] { main_.showPanel(1); }}),
      webSearch_({.comEngine = main_.comEngine,
                  .comQuery = main_.comQuery,
                  .cmdSearch = main_.cmdSearch,
                  .mnuSearch = main_.menu("mnuSearch"),
                  .shell = platform.shell,
                  .applicationFolder = platform.application.Path(),
                  .machine = platform.machine,
                  .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                  .show = [this] { main_.showPanel(0); }}),
      startUp_(IniFile_, {.application = platform.application,
                          .settings = settings_,
                          .forms = forms_,
                          .Login = login_,
                          .Splash = splash_,
                          .Main = main_,
                          .SetAgent = [this] { character_.SetAgent(); },
                          .releaseWordApp = {}}) {
    main_.steps.SetAccessoriesMnu = [this] { options_.Load(); };
    main_.steps.loadLaunchLists = [this] {
        launchLists_.LoadOfficeList();
        launchLists_.LoadFavouritesList();
    };
    main_.steps.clearRequests = [this] { character_.clearRequests(); };
}

void Program::start() {
    platform_.loop.post([this] { startUp_.Main(); });
}

}  // namespace velmora
