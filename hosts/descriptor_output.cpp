#include "hosts/descriptor_output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace velmora {

std::streamsize DescriptorOutput::xsputn(const char* text, std::streamsize count) {
    std::streamsize written = 0;
    while (written < count && !gone_) {
        const ssize_t result = write(descriptor_, text + written, static_cast<std::size_t>(count - written));
        if (result >= 0) {
            written += result;
        } else if (errno == EAGAIN) {
            pollfd waiting{descriptor_, POLLOUT, 0};
            poll(&waiting, 1, -1);
        } else if (errno != EINTR) {
            gone_ = true;
            if (onGone) onGone();
        }
    }
    return count;  // what nobody reads counts as written: the stream stays good
}

DescriptorOutput::int_type DescriptorOutput::overflow(int_type character) {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    const char text = traits_type::to_char_type(character);
    xsputn(&text, 1);
    return character;
}

}  // namespace velmora
