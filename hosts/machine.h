#pragma once

#include <memory>
#include <string>

#include "agent/voice/recordings.h"
#include "hosts/options.h"
#include "platform/boxes.h"
#include "platform/curl/curl_inets.h"
#include "platform/ini_settings_file.h"
#include "platform/loop.h"
#include "platform/machine_settings.h"
#include "platform/platform.h"
#include "platform/posix/posix_application.h"
#include "platform/posix/posix_files.h"
#include "platform/posix/sockets/posix_winsocks.h"
#include "platform/posix/system_clock.h"
#include "platform/posix/system_link.h"
#include "platform/qt/network_manager.h"
#include "platform/qt/qt_loop_host.h"
#include "platform/qt/qt_regional.h"

namespace velmora {

/// The application folder, and what is installed.
struct Folders {
    std::string application;
    std::string installed;
};

/// What every host of the program shares: this machine's files, time and chance, and one loop.
struct Machine {
    Machine(const Options& options, Folders folders);

    Folders folders;
    qt::QtLoopHost loopHost;
    Loop loop{loopHost};
    PosixApplication application;
    PosixFiles files;
    IniSettingsFile settings{files};
    MachineSettings machineSettings;
    SystemClock clock;
    /// Of the program's chance, and of the figure's own: what that does when it is left alone takes nothing
    /// from the other.
    std::uint64_t seed;
    SeededRandom random{seed};
    PatternRegional regional{qt::regionalForm(QLocale::system())};
    Boxes boxes{loop};
    std::shared_ptr<agent::Recordings> recordings;  ///< never null; complains on standard error
    PosixWinsocks winsocks;
    curl::CurlInets inets{
        {.loop = loop,
         .postFromThread = [this](std::function<void()> call) { loopHost.postFromThread(std::move(call)); },
         .files = files,
         .folder = folders.application}};
    qt::NetworkManager networkManager;
    SystemLink link{machineSettings, [this](std::string_view kinds) { return dial(kinds); }};

    /// Asks NetworkManager to connect, if it is there.
    long dial(std::string_view kinds);

    /// Name of the default character's package, and the folder in which a package lies.
    std::string characterPackage() const;
    std::string charactersFolder(const std::string& package) const;

    Platform platform(Shell& shell, Tray& tray, Pointer& pointer, AgentControl& agent, Link& link);
};

}  // namespace velmora
