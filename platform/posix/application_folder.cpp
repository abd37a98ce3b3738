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

}  // namespace

std::string defaultApplicationFolder() {
    constexpr std::string_view name = "velmora";
    // A relative value is invalid there and counts as unset.
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data == '/') return path(data, name);
    const auto home = homeFolder();
    return home.empty() ? "" : path(path(home, ".local/share"), name);
}

}  // namespace velmora
