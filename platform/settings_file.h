#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// Windows-style initialisation files: `[Section]` lines, `Key=Value` lines, names in any case. Nothing is
/// cached: each call looks at the file as it is at that moment. Neither operation reports a failure.
class SettingsFile {
public:
    virtual ~SettingsFile() = default;

    /// The value of the key, at most 254 characters of it; the default (cut likewise) where the file, the
    /// section or the key is missing or can't be read. Never writes.
    virtual std::string read(std::string_view section, std::string_view key, std::string_view defaultValue,
                             const std::string& file) const = 0;

    /// Sets the key, creating file and section when needed; all other bytes of the file stay. A file that
    /// can't be read or written keeps its content, and the value is lost silently.
    virtual void write(std::string_view section, std::string_view key, std::string_view value,
                       const std::string& file) = 0;
};

}  // namespace velmora
