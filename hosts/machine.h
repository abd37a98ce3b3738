#pragma once

#include <QString>
#include <memory>
#include <string>

#include "hosts/options.h"
#include "platform/boxes.h"
#include "platform/ini_settings_file.h"
#include "platform/loop.h"
#include "platform/machine_settings.h"
#include "platform/platform.h"
#include "platform/posix/posix_application.h"
#include "platform/posix/posix_files.h"
#include "platform/posix/system_clock.h"
#include "platform/qt/qt_loop_host.h"

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
    SeededRandom random;
    Boxes boxes{loop};

    /// Name of the default character's package, and the folder that it lies in.
    std::string characterPackage() const;
    QString charactersFolder() const { return charactersFolder(characterPackage()); }
    QString charactersFolder(const std::string& package) const;

    Platform platform(Shell& shell, Tray& tray, Pointer& pointer, AgentControl& agent);
};

}  // namespace velmora
