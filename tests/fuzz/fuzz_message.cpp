#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/failure.h"
#include "mail/message.h"

/// Any text: it is refused and leaves no trace, or head and body make up the whole.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    velmora::CMessage message;
    try {
        message.CreateFromText(std::string(text));
        if (message.Headers + "\r\n\r\n" + message.MessageBody != text ||
            message.Size() != static_cast<int>(size))
            std::abort();
    } catch (const velmora::Failure&) {
        if (message.Size() != 0 || !message.Headers.empty() || !message.Subject.empty()) std::abort();
    }
    return 0;
}
