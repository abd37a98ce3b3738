#pragma once

#include <QString>
#include <optional>
#include <string>
#include <string_view>

namespace velmora::qt {

/// What the desktop has for a role.
struct DesktopProgram {
    std::string id;    ///< of the program's desktop entry; empty: the desktop has no program for it
    QString document;  ///< what to open instead; empty: nothing
};

/// The desktop's own program for a role: "calculator", "audio-player", "word-processor", "text-editor" or
/// "system-information". The user's default for the kinds of file that belong to the role goes before any
/// other program of its category. Nothing for a text that is no role.
std::optional<DesktopProgram> desktopProgram(std::string_view role);

/// Starts the program of that desktop entry, and does not wait for it. One that can't be started is passed
/// over.
void startDesktopProgram(const std::string& id);

}  // namespace velmora::qt
