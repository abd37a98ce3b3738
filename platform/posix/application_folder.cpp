#include "platform/posix/application_folder.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "platform/files.h"

namespace velmora {
namespace {

std::string homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home == '/') return home;
    const auto* user = ::getpwuid(::geteuid());
    return user && user->pw_dir ? user->pw_dir : "";
}

// A relative value is invalid in such a variable, and counts as unset.
std::string folderOfTheUser(const char* variable, std::string_view belowHome) {
    constexpr std::string_view name = "velmora";
    if (const char* folder = std::getenv(variable); folder && *folder == '/') return path(folder, name);
    const auto home = homeFolder();
    return home.empty() ? "" : path(path(home, belowHome), name);
}

}  // namespace

std::string defaultApplicationFolder() {
    return folderOfTheUser("XDG_DATA_HOME", ".local/share");
}

std::string stateFolder() {
    return folderOfTheUser("XDG_STATE_HOME", ".local/state");
}

}  // namespace velmora
