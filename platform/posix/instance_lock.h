#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/file_descriptor.h"

namespace velmora {

/// Held by the one running copy of the program for a user, a display and an application folder. The system
/// releases it with the object or at the end of the process, however that ends, so that none is ever left
/// behind.
class InstanceLock {
public:
    /// Nothing if another lock object, in this process or another, holds it. `lockFolder` must exist; the
    /// lock's file stays there. Fails with 75 where no lock file can be opened.
    static std::optional<InstanceLock> acquire(std::string_view display, const std::string& applicationFolder,
                                               const std::string& lockFolder);

private:
    explicit InstanceLock(FileDescriptor file) : file_(std::move(file)) {}

    FileDescriptor file_;
};

/// The user's folder for lock files: $XDG_RUNTIME_DIR, or velmora-UID in the temporary folder, created if
/// missing. Fails with 75 for one that belongs to someone else or that others may enter.
std::string defaultLockFolder();

/// What names the display in the environment, the Wayland one first; empty without a display.
std::string displayName();

}  // namespace velmora
