#pragma once

#include <functional>

#include "core/step.h"

namespace velmora {

/// What the load of the main window asks of the subsystems, in the order of the load. A subsystem that joins
/// the program fills its steps in the composition; the order is fixed here.
struct FormLoadSteps {
    Step fillWordTips;
    Step clearTipTicks;
    Step hideCalenderOutlookMenu;  ///< only if the profile has not enabled Outlook
    Step clearAlarm;
    Step ReadMailSettings;
    Step SetAccessoriesMnu;
    Step loadLaunchLists;
    Step clearRequests;
    Step loadJokesAndTips;
    Step clearMailTimer;
    Step buildSongList;
};

/// What the main window's own handlers ask of the subsystems, which fill these steps in the composition.
struct MainWindowSteps {
    Step checkAlarm;  ///< each second, before the clock
    Step showCalender;
    Step ReadMail_2;
};

/// The messenger's window, as the main menu opens and closes it. Empty until the composition fills it.
struct MessengerWindow {
    Step Show;
    std::function<bool()> LoggedOn;
    Step LogOut;
    Step Unload;
};

}  // namespace velmora
