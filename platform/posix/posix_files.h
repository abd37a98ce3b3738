#pragma once

#include "platform/files.h"

namespace velmora {

/// The file system of a POSIX system. Reads and replaces regular files only (75 for a device or a pipe), so
/// that no call waits for anyone. Symbolic links are followed: `replace` puts the new file where the link
/// points. A path with a NUL in it names nothing (75).
class PosixFiles final : public Files {
public:
    bool exists(const std::string& path) const override;
    std::string read(const std::string& path) const override;

    /// A `shared` file that is replaced keeps its permissions. The new content is on the disk when this
    /// returns.
    void replace(const std::string& path, std::string_view content, Privacy privacy) override;

    /// Removes a symbolic link itself, not what it points to.
    void remove(const std::string& path) override;

    /// Fails with 75 for a folder that can't be read.
    std::vector<std::string> list(const std::string& folder, std::string_view ending) const override;
};

}  // namespace velmora
