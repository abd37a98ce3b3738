#include "platform/machine_settings.h"

#include <array>

#include "base/text.h"

namespace velmora {
namespace {

struct Entry {
    std::string_view section;
    std::string_view key;
    std::string_view value;
    std::string_view comment;
};

constexpr std::array entries{
    Entry{"Character", "Default", "Merlin", "Name of the character package."},
    Entry{"Feedback", "Address", "feedback@velmora.invalid", "Mail address of the error report."},
    Entry{"Speech", "Device", "default",
          "default, none (silent, in time) or file:PATH (a WAV of all that is said)."},
    Entry{"Speech", "Voice", "", "Name of the speech engine's voice; empty: the character's own."},
    Entry{"Speech", "Rate", "", "Words per minute; empty: the character's own."},
    Entry{"Speech", "Pitch", "", "0 to 99; empty: the character's own."},
};

}  // namespace

MachineSettings::MachineSettings(const SettingsFile& reader, const std::string& folder)
    : reader_(reader), file_(path(folder, fileName)) {}

std::string MachineSettings::value(std::string_view section, std::string_view key) const {
    std::string_view standing;
    for (const Entry& entry : entries) {
        if (equalsIgnoringCase(entry.section, section) && equalsIgnoringCase(entry.key, key))
            standing = entry.value;
    }
    return reader_.read(section, key, standing, file_);
}

std::string MachineSettings::initialText() {
    std::string text =
        "; What Velmora needs to know about this machine. Change a value and start the program anew.\n";
    std::string_view section;
    for (const Entry& entry : entries) {
        if (entry.section != section) {
            section = entry.section;
            text.append("\n[").append(section).append("]\n");
        }
        text.append("; ").append(entry.comment).append("\n");
        text.append(entry.key).append("=").append(entry.value).append("\n");
    }
    return text;
}

}  // namespace velmora
