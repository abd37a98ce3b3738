#pragma once

#include <functional>
#include <streambuf>

namespace velmora {

/// Writes to a file descriptor all that it is given, also to one that does not block; the descriptor stays
/// the caller's.
class DescriptorOutput : public std::streambuf {
public:
    explicit DescriptorOutput(int descriptor) : descriptor_(descriptor) {}

    /// Told once, when nobody reads any more.
    std::function<void()> onGone;

protected:
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    int_type overflow(int_type character) override;

private:
    int descriptor_;
    bool gone_ = false;
};

}  // namespace velmora
