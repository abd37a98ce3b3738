#pragma once

#include <string>

#include "platform/loop.h"
#include "platform/machine_settings.h"

namespace velmora::qt {

/// Where the windows of the character read and write. All of it outlives them.
struct CharacterSettings {
    Loop& loop;
    const MachineSettings& machine;
    SettingsFile& writer;
    std::string file;  ///< path of the file behind `machine`
};

}  // namespace velmora::qt
