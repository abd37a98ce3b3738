#include "platform/posix/file_descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "base/failure.h"

namespace velmora {

FileDescriptor::~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
}

FileDescriptor openFile(const std::string& path, int flags, mode_t mode) {
    for (;;) {
        FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC, mode));
        if (file || errno != EINTR) return file;
    }
}

void createPrivateFolder(const std::string& folder) {
    constexpr mode_t ownersOnly = 0700;
    for (auto end = folder.find('/', 1);; end = folder.find('/', end + 1)) {
        const auto part = folder.substr(0, end);
        struct stat status {};
        if (::mkdir(part.c_str(), ownersOnly) != 0 &&
            (::stat(part.c_str(), &status) != 0 || !S_ISDIR(status.st_mode))) {
            throw Failure(errors::pathFileAccess);
        }
        if (end == std::string::npos) return;
    }
}

}  // namespace velmora
