#pragma once

#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/settings_file.h"

namespace velmora {

/// What a user sets once about the machine: `platform.conf` in the application folder. Read when asked; a
/// missing file or key gives the default, and sections and keys that are not known here are left alone.
class MachineSettings {
public:
    MachineSettings(const SettingsFile& reader, const std::string& folder);

    /// The value, or its default from the table; empty for a key that the table does not know and the file
    /// does not hold.
    std::string value(std::string_view section, std::string_view key) const;

    /// The file as it is written at the first start: every known key with its default, and what it is for.
    static std::string initialText();
    static constexpr std::string_view fileName = "platform.conf";

private:
    const SettingsFile& reader_;
    std::string file_;
};

}  // namespace velmora
