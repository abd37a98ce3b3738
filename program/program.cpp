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
      options_(forms_, {.files = platform.files,
                        .settings = settings_,
                        .IniFile = IniFile_,
                        .applicationFolder = platform.application.Path(),
                        .dialogs = platform.dialogs,
                        .fileDialogs = main_.fileDialogs,
                        .menu = [this](std::string_view name, std::optional<int> index) -> Menu& {
                            return main_.menu(name, index);
                        },
                        .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                        .MainKey = main_.MainKey,
                        .TmrMail = main_.TmrMail,
                        .TimerJoke = main_.TimerJoke,
                        .MailInterval = main_.MailInterval,
                        .ReadEntire = main_.ReadEntire,
                        .ReadMailSettings = [this] { mailSettings_.ReadMailSettings(); },
                        .LoadOfficeList = [this] { launchLists_.LoadOfficeList(); },
                        .SaveOfficeList = [this] { launchLists_.SaveOfficeList(); },
                        .LoadFavouritesList = [this] { launchLists_.LoadFavouritesList(); },
                        .SaveFavouritesList = [this] { launchLists_.SaveFavouritesList(); }}),
      mailSettings_({.settings = settings_,
                     .IniFile = IniFile_,
                     .MainKey = main_.MainKey,
                     .TxtServer = options_.TxtServer,
                     .TxtUser = options_.TxtUser,
                     .TxtPass = options_.TxtPass,
                     .TxtChkInterval = options_.TxtChkInterval,
                     .chkReadEntire = options_.chkReadEntire,
                     .TmrMail = main_.TmrMail,
                     .MailInterval = main_.MailInterval,
                     .ReadEntire = main_.ReadEntire}),
      mailCheck_({.winsocks = platform.winsocks,
                  .dialogs = platform.dialogs,
                  .TxtServer = options_.TxtServer,
                  .TxtUser = options_.TxtUser,
                  .TxtPass = options_.TxtPass,
                  .TmrMail = main_.TmrMail,
                  .mnuCheckMail = main_.menu("mnuCheckMail"),
                  .MailInterval = main_.MailInterval,
                  .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                  .IsConnected = [this] { return dialUp_.IsConnected(); },
                  .checkFavourites = [this] { favouritesCheck_.run(); },
                  .AnnounceNewMail = [this] { mailReader_.AnnounceNewMail(); },
                  .FillMailCombo = [this] { mailReader_.FillMailCombo(); },
                  .showMainWindow = [this] { main_.setVisible(true); }}),
      favouritesCheck_({.inets = platform.inets,
                        .clock = platform.clock,
                        .comFavouriteURL = options_.comFavouriteURL,
                        .mnuCustom = [this](int index) -> Menu& { return main_.menu("mnuCustom", index); },
                        .MailLoopIndex = mailCheck_.MailLoopIndex}),
      mailReader_({.messages = mailCheck_.MailMessages,
                   .comMail = main_.comMail,
                   .cmdReadMsg = main_.cmdReadMsg,
                   .mnuEMessages = main_.menu("mnuEMessages"),
                   .ReadEntire = main_.ReadEntire,
                   .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                   .showPanel = [this] { main_.showPanel(3); }}),
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
      dialUp_(
          {.link = platform.link, .dialogs = platform.dialogs, .mnuIntConnect = main_.menu("mnuIntConnect")}),
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
      alarm_({.AlarmTPick = main_.AlarmTPick,
              .txtAlarmEvent = main_.txtAlarmEvent,
              .cmdAlarmSet = main_.cmdAlarmSet,
              .cmdAlarmOptions = main_.cmdAlarmOptions,
              .mnuAlarm = main_.menu("mnuAlarm"),
              .clock = platform.clock,
              .regional = platform.regional,
              .Character = [this]() -> AgentCharacter& { return *character_.Character; },
              .AgentVisible = [this] { character_.AgentVisible(); },
              .showOptions = [this] { frmAlarm_.Show(); },
              .show = [this] { main_.showPanel(2); }}),
      frmAlarm_(forms_, {.alarm = alarm_,
                         .txtAlarmEvent = main_.txtAlarmEvent,
                         .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                         .AgentVisible = [this] { character_.AgentVisible(); }}),
      calender_(forms_,
                {.settings = settings_,
                 .IniFile = IniFile_,
                 .files = platform.files,
                 .applicationFolder = platform.application.Path(),
                 .clock = platform.clock,
                 .regional = platform.regional,
                 .dialogs = platform.dialogs,
                 .FileExists = [this](const std::string& file) { return FileExists(platform_.files, file); },
                 .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                 .AgentVisible = [this] { character_.AgentVisible(); }}),
      jokes_({.files = platform.files,
              .applicationFolder = platform.application.Path(),
              .random = platform.random,
              .fleSongs = main_.fleSongs,
              .TimerJoke = main_.TimerJoke,
              .mnuJokeTell = main_.menu("mnuJokeTell"),
              .mnuInteractTip = main_.menu("mnuInteractTip"),
              .mnuInteractSong = main_.menu("mnuInteractSong"),
              .Character = [this]() -> AgentCharacter& { return *character_.Character; },
              .AgentVisible = [this] { character_.AgentVisible(); }}),
      actionScripts_({.mnuScriptOpen = main_.menu("mnuScriptOpen"),
                      .fileDialogs = main_.fileDialogs,
                      .files = platform.files,
                      .dialogs = platform.dialogs,
                      .Character = [this]() -> AgentCharacter& { return *character_.Character; },
                      .AgentVisible = [this] { character_.AgentVisible(); }}),
      writeScript_(forms_, {.mnuScriptWrite = main_.menu("mnuScriptWrite"),
                            .fileDialogs = main_.fileDialogs,
                            .files = platform.files,
                            .applicationFolder = platform.application.Path(),
                            .dialogs = platform.dialogs,
                            .scripts = actionScripts_,
                            .Character = [this]() -> AgentCharacter& { return *character_.Character; }}),
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
    main_.steps.ReadMailSettings = [this] { mailSettings_.ReadMailSettings(); };
    main_.steps.clearMailTimer = [this] { mailCheck_.clearMailTimer(); };
    main_.windowSteps.ReadMail_2 = [this] { mailReader_.cmdReadMsg_Click(); };
    main_.steps.SetAccessoriesMnu = [this] { options_.SetAccessoriesMnu(); };
    main_.steps.loadLaunchLists = [this] {
        launchLists_.LoadOfficeList();
        launchLists_.LoadFavouritesList();
    };
    main_.steps.clearRequests = [this] { character_.clearRequests(); };
    character_.steps.showProfile = [this] { profile_.Show(); };
    main_.steps.loadJokesAndTips = [this] { jokes_.loadJokesAndTips(); };
    main_.steps.buildSongList = [this] { jokes_.buildSongList(); };
    connectCommands();
    connectOrganiser();
}

void Program::start() {
    platform_.loop.post([this] { startUp_.Main(); });
}

void Program::connectOrganiser() {
    main_.steps.clearAlarm = [this] { alarm_.clear(); };
    main_.steps.hideCalenderOutlookMenu = [this] { calender_.hideOutlookMenu(); };
    main_.windowSteps.checkAlarm = [this] { alarm_.check(); };
    main_.windowSteps.showCalender = [this] { calender_.setVisible(true); };
    character_.steps.CheckTodaysApps = [this] { calender_.CheckTodaysApps(); };
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
    actions.Check_Mail = [this] { mailCheck_.Check_Mail(); };
    actions.MnuEMail_Click = entry("mnuEMail");
    actions.mnuMessengerOpen_Click = entry("mnuMessengerOpen");
    actions.tellJoke = entry("mnuJokeTell");
    actions.singSong = entry("mnuInteractSong");
    actions.giveTip = entry("mnuInteractTip");
    actions.cmdFrames_Click = [this](int index) { main_.cmdFrames_Click(index); };
}

}  // namespace velmora
