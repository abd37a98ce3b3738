#pragma once

#include <string>
#include <string_view>

namespace velmora {

class SettingsFile;

/// The default that most settings are read with; a stored value of this text can't be told from a missing
/// key.
inline constexpr std::string_view missingValue = "Error!";

/// The settings of one running program: files in its application folder, read and written key by key, with no
/// cache.
class Settings {
public:
    /// `files` must outlive this object.
    Settings(SettingsFile& files, std::string applicationFolder);

    /// The value of the key in `File`, a name relative to the application folder; at most 254 characters.
    /// `Default` where it is missing. Never fails.
    std::string ReadIni(std::string_view Section, std::string_view Key, std::string_view Default,
                        std::string_view File) const;

    /// Sets the key in `File`, creating file and section when needed. A file that can't be written loses the
    /// value silently.
    void WriteIni(std::string_view Section, std::string_view Key, std::string_view Value,
                  std::string_view File);

private:
    SettingsFile& files_;
    std::string applicationFolder_;
};

}  // namespace velmora
