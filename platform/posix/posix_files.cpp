#include "platform/posix/posix_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <new>
#include <optional>
#include <random>
#include <stdexcept>
#include <system_error>

#include "base/failure.h"
#include "base/text.h"
#include "platform/posix/file_descriptor.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;

constexpr mode_t permissionBits = 0777;
constexpr mode_t writeBits = 0222;
constexpr mode_t ownersOnlyMode = 0600;
constexpr mode_t sharedMode = 0666;

std::optional<struct stat> statusOf(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    return status;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// Throws what the error number means for this path.
[[noreturn]] void fail(int error, const std::string& path) {
    if (error == ENOTDIR) throw Failure(errors::pathNotFound);
    if (error != ENOENT) throw Failure(errors::pathFileAccess);
    const auto folder = statusOf(folderOf(path));
    throw Failure(folder && S_ISDIR(folder->st_mode) ? errors::fileNotFound : errors::pathNotFound);
}

/// A C string would end at the NUL and name another file.
void refuseNul(std::string_view path) {
    if (path.find('\0') != std::string_view::npos) throw Failure(errors::pathFileAccess);
}

/// The last path of a chain of symbolic links; it may name nothing yet. 75 for links that go in a circle.
std::string linkTarget(std::string path) {
    constexpr int longestChain = 40;
    for (int i = 0; i < longestChain; ++i) {
        std::error_code error;
        const auto next = fs::read_symlink(path, error);
        if (error) return path;
        path = (fs::path(path).parent_path() / next).native();
    }
    throw Failure(errors::pathFileAccess);
}

/// Reads to the end of the file; `size` is a first guess, which files of the kernel's own get wrong.
std::string readAll(const FileDescriptor& file, std::size_t size, const std::string& path) {
    constexpr std::size_t step = 65'536;
    std::string content;
    std::size_t used = 0;
    content.resize(size + 1);
    for (;;) {
        const auto count = ::read(file.number(), content.data() + used, content.size() - used);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(errno, path);
        if (count == 0) break;
        used += static_cast<std::size_t>(count);
        if (used == content.size()) content.resize(std::max(step, content.size() * 2));
    }
    content.resize(used);
    return content;
}

/// A new file beside the one it is to replace; removed again unless it has been put in place.
class TemporaryFile {
public:
    /// The name can't be guessed, and an existing file is never opened.
    TemporaryFile(const std::string& folder, mode_t mode) {
        std::random_device random;
        do {
            const auto number = (std::uint64_t{random()} << 32) | random();
            path_ = folder + "/.velmora-" + std::to_string(number) + ".tmp";
            file_ = openFile(path_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
        } while (!file_ && errno == EEXIST);
        if (!file_) fail(errno, path_);
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!inPlace_) ::unlink(path_.c_str());
    }

    void setMode(mode_t mode) {
        if (::fchmod(file_.number(), mode) != 0) fail(errno, path_);
    }

    void write(std::string_view content) {
        while (!content.empty()) {
            const auto count = ::write(file_.number(), content.data(), content.size());
            if (count >= 0) {
                content.remove_prefix(static_cast<std::size_t>(count));
            } else if (errno != EINTR) {
                fail(errno, path_);
            }
        }
    }

    /// The content reaches the disk before the name does: after a power cut the name never stands for half a
    /// file.
    void moveTo(const std::string& target) {
        // EINVAL: this kind of file system has no disk to reach.
        while (::fsync(file_.number()) != 0) {
            if (errno == EINVAL) break;
            if (errno != EINTR) fail(errno, path_);
        }
        if (::rename(path_.c_str(), target.c_str()) != 0) fail(errno, target);
        inPlace_ = true;
    }

private:
    std::string path_;
    FileDescriptor file_;
    bool inPlace_ = false;
};

/// The mode bits count for a user who may do all, too; the system's own answer, for someone else's file.
void refuseUnwritable(const std::string& path, const struct stat& status) {
    if (!S_ISREG(status.st_mode) || (status.st_mode & writeBits) == 0 ||
        ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) {
        throw Failure(errors::pathFileAccess);
    }
}

/// The new file is in place whatever comes of this: without it a power cut may bring the old one back, whole.
void syncFolder(const std::string& folder) {
    const auto opened = openFile(folder, O_RDONLY | O_DIRECTORY);
    if (opened) static_cast<void>(::fsync(opened.number()));
}

/// Runs the step; what else the library throws (no memory, no random numbers) is an access failure too.
template <class Step>
auto failingAsAccess(Step step) {
    try {
        return step();
    } catch (const Failure&) {
        throw;
    } catch (const std::exception&) {
        throw Failure(errors::pathFileAccess);
    }
}

}  // namespace

bool PosixFiles::exists(const std::string& path) const {
    return path.find('\0') == std::string::npos && statusOf(path).has_value();
}

std::string PosixFiles::read(const std::string& path) const {
    refuseNul(path);
    // A pipe that nobody writes to would hold up the opening.
    const auto file = openFile(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file) fail(errno, path);
    struct stat status {};
    if (::fstat(file.number(), &status) != 0) fail(errno, path);
    if (!S_ISREG(status.st_mode)) throw Failure(errors::pathFileAccess);
    return failingAsAccess([&] { return readAll(file, static_cast<std::size_t>(status.st_size), path); });
}

void PosixFiles::replace(const std::string& path, std::string_view content, Privacy privacy) {
    refuseNul(path);
    failingAsAccess([&] {
        const auto target = linkTarget(path);
        const auto folder = folderOf(target);
        const auto old = statusOf(target);
        if (old) refuseUnwritable(target, *old);

        TemporaryFile file(folder, privacy == Privacy::ownersOnly ? ownersOnlyMode : sharedMode);
        if (privacy == Privacy::ownersOnly) {
            file.setMode(ownersOnlyMode);
        } else if (old) {
            file.setMode(old->st_mode & permissionBits);
        }
        file.write(content);
        file.moveTo(target);
        syncFolder(folder);
    });
}

void PosixFiles::remove(const std::string& path) {
    refuseNul(path);
    if (::unlink(path.c_str()) != 0) fail(errno, path);
}

std::vector<std::string> PosixFiles::list(const std::string& folder, std::string_view ending) const {
    refuseNul(folder);
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code unreadable;
        auto name = entry->path().filename().native();
        if (endsWithIgnoringCase(name, ending) && entry->is_regular_file(unreadable)) {
            names.push_back(std::move(name));
        }
    }
    const bool absent = error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
    if (error && !absent) throw Failure(errors::pathFileAccess);
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace velmora
