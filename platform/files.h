#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// Who may read a file that the program writes.
enum class Privacy {
    shared,      ///< the user's umask decides
    ownersOnly,  ///< mode 0600, whatever the file had before
};

/// The file system as the logic sees it. Paths are bytes; logic makes them with `path()` below.
///
/// Failures: 53 file not found, 76 a folder of the path is missing, 75 everything else that the system
/// refuses (a folder where a file is meant, no permission, a read-only file, a full disk).
class Files {
public:
    virtual ~Files() = default;

    /// Whether there is anything (a file or a folder) at the path. Never fails.
    virtual bool exists(const std::string& path) const = 0;

    /// The whole content, byte for byte. Fails with 53, 75, 76.
    virtual std::string read(const std::string& path) const = 0;

    /// Puts a file with this content at the path: whoever looks, now or after a power cut, sees the old file
    /// or the new one, whole. A file whose own mode forbids writing is left alone (75), also for a user who
    /// may do all.
    virtual void replace(const std::string& path, std::string_view content, Privacy privacy) = 0;

    /// Removes the file. Fails with 53 if there is none, 75 for a folder.
    virtual void remove(const std::string& path) = 0;

    /// Names (without the folder) of the plain files in the folder whose name ends with `ending`, letters of
    /// either case, in ascending byte order. An absent folder has none.
    virtual std::vector<std::string> list(const std::string& folder, std::string_view ending) const = 0;
};

/// Folder and name joined by the platform's separator, whatever the folder ends with.
std::string path(std::string_view folder, std::string_view name);

}  // namespace velmora
