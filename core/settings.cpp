#include "core/settings.h"

#include <utility>

#include "platform/files.h"
#include "platform/settings_file.h"

namespace velmora {

Settings::Settings(SettingsFile& files, std::string applicationFolder)
    : files_(files), applicationFolder_(std::move(applicationFolder)) {}

std::string Settings::ReadIni(std::string_view Section, std::string_view Key, std::string_view Default,
                              std::string_view File) const {
    return files_.read(Section, Key, Default, path(applicationFolder_, File));
}

void Settings::WriteIni(std::string_view Section, std::string_view Key, std::string_view Value,
                        std::string_view File) {
    files_.write(Section, Key, Value, path(applicationFolder_, File));
}

}  // namespace velmora
