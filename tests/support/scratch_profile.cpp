#include "tests/support/scratch_profile.h"

#include <stdlib.h>

#include <cerrno>
#include <fstream>
#include <string_view>
#include <system_error>

namespace velmora::blackbox {
namespace {

constexpr std::string_view fifteenSettings =
    "[Options]\r\nDefault=True\r\nJokes=Off\r\n"
    "[User]\r\nName=Anna\r\nLastName=Example\r\nEMail=anna@mail.example\r\nOutlookEnabled=False\r\n"
    "[EMail]\r\nServer=mail.example\r\nUser=anna\r\nPass=\r\nInterval=0\r\nEntire=False\r\n"
    "[Accessories]\r\nCalc=Sel\r\nCD=Sel\r\nNotepad=Sel\r\nWordpad=Sel\r\n";

constexpr std::string_view silentPlatform = "[Speech]\nDevice=none\n[Hearing]\nDevice=none\n";

void write(const std::filesystem::path& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    if (!file) throw std::system_error(std::make_error_code(std::errc::io_error), path.string());
}

}  // namespace

ScratchProfile::ScratchProfile() {
    auto name = (std::filesystem::temp_directory_path() / "velmora-bench.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
    root_ = name;
    std::filesystem::create_directory(folder());
    std::filesystem::create_directory(root_ / "home");
    write(folder() / "Velmora.ini", fifteenSettings);
    write(folder() / "platform.conf", silentPlatform);
}

ScratchProfile::~ScratchProfile() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
}

std::vector<std::string> ScratchProfile::environment(const std::vector<std::string>& more) const {
    const char* path = getenv("PATH");
    std::vector<std::string> variables{"PATH=" + std::string(path != nullptr ? path : "/usr/bin:/bin"),
                                       "HOME=" + (root_ / "home").string(),
                                       "XDG_RUNTIME_DIR=" + root_.string(), "LC_ALL=C.UTF-8"};
    variables.insert(variables.end(), more.begin(), more.end());
    return variables;
}

}  // namespace velmora::blackbox
