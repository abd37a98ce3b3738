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
      dialUp_({.link = platform.link,
               .dialogs = platform.dialogs,
               .loop = platform.loop,
               .mnuIntConnect = main_.menu("mnuIntConnect")}),
      profile_(forms_, {.settings = settings_,
                        .IniFile = IniFile_,
                        .dialogs = platform.dialogs,
                        .inets = platform.inets,
                        .directory = DirectoryService(platform.machine),
                        .IsConnected = [this] { return dialUp_.IsConnected(); },
                        .DialUp = [this] { dialUp_.DialUp(); },
                        .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                        .AgentVisible = [this] { character_.AgentVisible(); },
                        .MoveAgentTo =
                            [this](long x, long y) {
                                character_.AgentX = x;
                                character_.AgentY = y;
                                character_.MoveAgentTo();
                            },
                        .RequestExplain = character_.RequestExplain,
                        .MainKey = main_.MainKey,
                        .UID = main_.UID,
                        .NickName = main_.NickName}),
      dispatch_({.AgentCtrl = platform.agent,
                 .host = character_,
                 .dialogs = platform.dialogs,
                 .lists = commandLists_,
                 .Execute = execute_,
                 .popUp = [this](std::string_view menu) { main_.PopupMenu(main_.menu(menu)); },
                 .bringUpMain = [this] { main_.bringUp(); }}),
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
    character_.steps.showProfile = [this] { profile_.Show(); };
    connectCommands();
}

void Program::start() {
    platform_.loop.post([this] { startUp_.Main(); });
}

void Program::connectCommands() {
    commandLists_.office = {[this](int row) { return options_.ComOffice.List(row); },
                            [this](int row) { return options_.comOfficeCommands.List(row); }};
    commandLists_.favourites = {[this](int row) { return options_.comFavourites.List(row); },
                                [this](int row) { return options_.comFavouriteURL.List(row); }};
    character_.steps.InitCommands = [this] {
        passOver([this] { InitCommands(character_.Character->Commands(), commandLists_); });
    };

    // A command does what its entry in the menu does, also while that is hidden.
    const auto entry = [this](std::string_view name) {
        return [&menu = main_.menu(name)] { menu.Click.raise(); };
    };
    auto& actions = dispatch_.actions;
    actions.mnuAbout_Click = entry("mnuAbout");
    actions.mnuOptions_Click = entry("mnuOptions");
    actions.showCalender = entry("mnuCalender");
    actions.mnuCalculator_Click = entry("mnuCalculator");
    actions.mnuCDPlayer_Click = entry("mnuCDPlayer");
    actions.mnuNotepad_Click = entry("mnuNotepad");
    actions.mnuWordpad_Click = entry("mnuWordpad");
    actions.startWord = entry("mnuOpenWord");
    actions.newDocument = entry("mnuNewDoc");
    actions.Check_Mail = entry("mnuCheckMail");
    actions.MnuEMail_Click = entry("mnuEMail");
    actions.mnuMessengerOpen_Click = entry("mnuMessengerOpen");
    actions.tellJoke = entry("mnuJokeTell");
    actions.singSong = entry("mnuInteractSong");
    actions.giveTip = entry("mnuInteractTip");
    actions.cmdFrames_Click = [this](int index) { main_.cmdFrames_Click(index); };
}

}  // namespace velmora
