#pragma once

#include <string>
#include <string_view>

#include "platform/settings_file.h"

namespace velmora {

class Files;

/// Settings files on a `Files`. Lines end with CR, LF or CRLF; lines that begin with ';' or '#', and lines
/// without a '=', are comments. Of two sections, or two keys, with one name the first counts. Blanks around
/// names and values, and one pair of quotes around a value, do not belong to it.
class IniSettingsFile final : public SettingsFile {
public:
    /// `files` must outlive this object.
    explicit IniSettingsFile(Files& files) : files_(files) {}

    std::string read(std::string_view section, std::string_view key, std::string_view defaultValue,
                     const std::string& file) const override;

    /// New files, and files that change, become readable by their owner only. Sections and keys that no line
    /// could name (empty, with a line end, NUL, '=' or ']' in them, a key that looks like a comment or a
    /// section) are not written.
    void write(std::string_view section, std::string_view key, std::string_view value,
               const std::string& file) override;

private:
    Files& files_;
};

}  // namespace velmora
