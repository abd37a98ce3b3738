#pragma once

#include "platform/agent_control.h"
#include "platform/application.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/inet.h"
#include "platform/link.h"
#include "platform/loop.h"
#include "platform/machine_settings.h"
#include "platform/pointer.h"
#include "platform/random.h"
#include "platform/settings_file.h"
#include "platform/shell.h"
#include "platform/winsock.h"

namespace velmora {

/// Everything outside the logic that one running program stands on. All of it outlives the program.
struct Platform {
    Loop& loop;
    Application& application;
    Files& files;
    SettingsFile& settings;
    const MachineSettings& machine;
    Clock& clock;
    Random& random;
    Dialogs& dialogs;
    Shell& shell;
    Tray& tray;
    Pointer& pointer;
    AgentControl& agent;
    Winsocks& winsocks;
    Inets& inets;
    Link& link;
};

}  // namespace velmora
