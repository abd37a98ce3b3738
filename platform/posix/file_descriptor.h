#pragma once

#include <sys/types.h>

#include <string>
#include <utility>

namespace velmora {

/// Owns an open file descriptor, or none.
class FileDescriptor {
public:
    FileDescriptor() = default;

    /// Takes over what a system call gave; a negative number is none.
    explicit FileDescriptor(int number) : number_(number) {}

    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    explicit operator bool() const { return number_ >= 0; }
    int number() const { return number_; }

private:
    int number_ = -1;
};

/// Opens a file, close-on-exec, again when a signal interrupts it. No descriptor on failure; `errno` says
/// why.
FileDescriptor openFile(const std::string& path, int flags, mode_t mode = 0);

/// Creates a folder that only its user may enter, and the folders above it that are missing. Fails with 75
/// where that is refused or something else stands at the path.
void createPrivateFolder(const std::string& folder);

}  // namespace velmora
