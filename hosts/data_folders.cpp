#include "hosts/data_folders.h"

#include <filesystem>
#include <iostream>
#include <system_error>

#include "base/failure.h"
#include "platform/files.h"
#include "platform/machine_settings.h"
#include "platform/posix/application_folder.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/posix_files.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

/// Copies the installed data file by file, so that a reader never meets half of one.
void seed(const fs::path& folder, const fs::path& installed) {
    PosixFiles files;
    files.replace((folder / MachineSettings::fileName).string(), MachineSettings::initialText(),
                  Privacy::ownersOnly);
    for (const auto& entry : fs::recursive_directory_iterator(installed)) {
        const fs::path target = folder / fs::relative(entry.path(), installed);
        if (entry.is_directory()) {
            fs::create_directories(target);
        } else if (entry.is_regular_file()) {
            files.replace(target.string(), files.read(entry.path().string()), Privacy::shared);
        }
    }
}

}  // namespace

std::string installedDataFolder() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    const fs::path beside = program.parent_path().parent_path() / "share" / "velmora";
    return !error && fs::is_directory(beside, error) ? beside.string() : VELMORA_DATA_FOLDER;
}

std::optional<std::string> prepareApplicationFolder(const std::string& chosen, const std::string& installed) {
    const std::string wanted = chosen.empty() ? defaultApplicationFolder() : chosen;
    if (wanted.empty()) {
        std::cerr << "velmora: there is no home folder; name an application folder with --folder\n";
        return {};
    }
    try {
        const fs::path folder = fs::absolute(wanted);
        if (!fs::exists(folder)) createPrivateFolder(folder.string());
        if (fs::is_empty(folder)) seed(folder, installed);
        return folder.string();
    } catch (const fs::filesystem_error& error) {
        std::cerr << "velmora: the application folder can't be used: " << error.what() << "\n";
    } catch (const Failure& failure) {
        std::cerr << "velmora: the application folder can't be used: " << wanted << ": "
                  << failure.description << "\n";
    }
    return {};
}

std::string charactersFolder(const std::string& applicationFolder, const std::string& installed,
                             const std::string& package) {
    std::error_code error;
    const fs::path own = fs::path(applicationFolder) / "characters";
    return fs::is_directory(own / package, error) ? own.string()
                                                  : (fs::path(installed) / "characters").string();
}

}  // namespace velmora
