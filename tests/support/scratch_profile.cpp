#include "tests/support/scratch_profile.h"

#include <cstdlib>
#include <string_view>

namespace velmora::blackbox {
namespace {

constexpr std::string_view fifteenSettings =
    "[Options]\r\nDefault=True\r\nJokes=Off\r\n"
    "[User]\r\nName=Anna\r\nLastName=Example\r\nEMail=anna@mail.example\r\nOutlookEnabled=False\r\n"
    "[EMail]\r\nServer=mail.example\r\nUser=anna\r\nPass=\r\nInterval=0\r\nEntire=False\r\n"
    "[Accessories]\r\nCalc=Sel\r\nCD=Sel\r\nNotepad=Sel\r\nWordpad=Sel\r\n";

constexpr std::string_view silentPlatform = "[Speech]\nDevice=none\n[Hearing]\nDevice=none\n";

}  // namespace

ScratchProfile::ScratchProfile() {
    std::filesystem::create_directory(folder());
    std::filesystem::create_directory(root_.file("home"));
    root_.write("application/Velmora.ini", fifteenSettings);
    root_.write("application/platform.conf", silentPlatform);
}

std::vector<std::string> ScratchProfile::environment(const std::vector<std::string>& more) const {
    const char* path = getenv("PATH");
    std::vector<std::string> variables{"PATH=" + std::string(path != nullptr ? path : "/usr/bin:/bin"),
                                       "HOME=" + root_.file("home"), "XDG_RUNTIME_DIR=" + root_.path(),
                                       "LC_ALL=C.UTF-8"};
    variables.insert(variables.end(), more.begin(), more.end());
    return variables;
}

}  // namespace velmora::blackbox
