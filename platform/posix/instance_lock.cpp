#include "platform/posix/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "base/failure.h"

namespace velmora {
namespace {

/// FNV-1a, 64 bits: the same in every build, as copies of different builds exclude each other too.
std::uint64_t hashOf(std::string_view text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char character : text) hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001b3;
    return hash;
}

/// One name for one folder, by whichever links it is reached.
std::string canonical(const std::string& folder) {
    std::error_code error;
    auto resolved = std::filesystem::weakly_canonical(folder, error);
    if (!resolved.has_filename()) resolved = resolved.parent_path();
    return error ? folder : resolved.native();
}

std::string lockName(std::string_view display, const std::string& applicationFolder) {
    std::string identity = std::to_string(::geteuid());
    identity.append(1, '\0').append(display).append(1, '\0').append(canonical(applicationFolder));
    return "velmora-" + std::to_string(hashOf(identity)) + ".lock";
}

bool isPrivate(const std::string& folder) {
    constexpr mode_t othersBits = 0077;
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & othersBits) == 0;
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace

std::optional<InstanceLock> InstanceLock::acquire(std::string_view display,
                                                  const std::string& applicationFolder,
                                                  const std::string& lockFolder) {
    auto file = openFile(lockFolder + "/" + lockName(display, applicationFolder),
                         O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (!file) throw Failure(errors::pathFileAccess);
    while (::flock(file.number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) return std::nullopt;
        if (errno != EINTR) throw Failure(errors::pathFileAccess);
    }
    return InstanceLock(std::move(file));
}

std::string defaultLockFolder() {
    auto folder = environment("XDG_RUNTIME_DIR");
    if (!folder.starts_with('/')) {
        folder = "/tmp/velmora-" + std::to_string(::geteuid());
        createPrivateFolder(folder);
    }
    if (!isPrivate(folder)) throw Failure(errors::pathFileAccess);
    return folder;
}

std::string displayName() {
    auto name = environment("WAYLAND_DISPLAY");
    return name.empty() ? environment("DISPLAY") : name;
}

}  // namespace velmora
