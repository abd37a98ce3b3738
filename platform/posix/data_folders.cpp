#include "platform/posix/data_folders.h"

#include <stdlib.h>

#include <filesystem>
#include <iostream>
#include <system_error>
#include <vector>

#include "base/failure.h"
#include "platform/files.h"
#include "platform/machine_settings.h"
#include "platform/posix/application_folder.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/posix_files.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

void copyData(const fs::path& folder, const fs::path& installed) {
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

/// Removes what is in the folder if the copying does not get to its end: what is left would pass for a user's
/// own.
class HalfFilled {
public:
    explicit HalfFilled(fs::path folder) : folder_(std::move(folder)) {}
    HalfFilled(const HalfFilled&) = delete;
    HalfFilled& operator=(const HalfFilled&) = delete;
    ~HalfFilled() {
        std::error_code ignored;
        if (done_) return;
        for (const auto& entry : fs::directory_iterator(folder_, ignored))
            fs::remove_all(entry.path(), ignored);
    }
    void done() { done_ = true; }

private:
    fs::path folder_;
    bool done_ = false;
};

/// A new folder beside another one, on the same disk. Goes with the object, unless it has been moved
/// elsewhere.
class FolderBeside {
public:
    explicit FolderBeside(const fs::path& other)
        : pattern_((other.parent_path() / ".velmora-XXXXXX").string()),
          made_(mkdtemp(pattern_.data()) != nullptr) {}
    FolderBeside(const FolderBeside&) = delete;
    FolderBeside& operator=(const FolderBeside&) = delete;
    ~FolderBeside() {
        std::error_code ignored;
        if (made_) fs::remove_all(pattern_, ignored);
    }
    /// False where none can be made.
    bool made() const { return made_; }
    fs::path path() const { return pattern_; }

private:
    std::string pattern_;
    bool made_;
};

/// Moves all that the copy holds to the folder; false if something stays behind.
bool moveEntries(const fs::path& copy, const fs::path& folder) {
    std::error_code refused;
    for (const fs::path& entry :
         std::vector<fs::path>(fs::directory_iterator(copy), fs::directory_iterator())) {
        fs::rename(entry, folder / entry.filename(), refused);
        if (refused) return false;
    }
    return true;
}

/// Makes the copy's content the folder's. One that we have just made ourselves gives up its place; one that
/// was there before keeps its owner and its mode, and stays the folder that others have open.
bool moveCopy(const fs::path& copy, const fs::path& folder, bool isNew) {
    if (!isNew) return moveEntries(copy, folder);
    std::error_code refused;
    fs::rename(copy, folder, refused);
    return !refused;
}

/// Fills the empty folder at once: the copy is made beside it, so that a start that is cut off leaves it
/// empty. A folder that nothing can be moved to (a mount point, a closed parent) is filled file by file.
void seed(const fs::path& folder, bool isNew, const fs::path& installed) {
    if (const FolderBeside copy(folder); copy.made()) {
        copyData(copy.path(), installed);
        if (moveCopy(copy.path(), folder, isNew)) return;
    }
    HalfFilled guard(folder);
    copyData(folder, installed);
    guard.done();
}

/// Without a slash or a dot at its end.
fs::path wholePath(const std::string& wanted) {
    const fs::path folder = fs::absolute(wanted).lexically_normal();
    return folder.has_filename() ? folder : folder.parent_path();
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
    std::string reason = "it is no folder";
    try {
        const fs::path folder = wholePath(wanted);
        const bool isNew = !fs::exists(folder);
        if (isNew) createPrivateFolder(folder.string());
        if (fs::is_directory(folder)) {
            if (fs::is_empty(folder)) seed(fs::canonical(folder), isNew, installed);
            return folder.string();
        }
    } catch (const fs::filesystem_error& error) {
        reason = error.code().message();
    } catch (const Failure& failure) {
        reason = failure.description;
    }
    std::cerr << "velmora: the application folder can't be used: " << wanted << ": " << reason << "\n";
    return {};
}

std::string charactersFolder(const std::string& applicationFolder, const std::string& installed,
                             const std::string& package) {
    std::error_code error;
    const fs::path own = fs::path(applicationFolder) / "characters";
    return fs::exists(own / package / "character.json", error)
               ? own.string()
               : (fs::path(installed) / "characters").string();
}

}  // namespace velmora
