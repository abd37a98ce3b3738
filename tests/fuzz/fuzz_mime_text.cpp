#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "mail/mime_text.h"

/// Any body: it stays as it is, or becomes a piece of itself that ends a boundary short.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string body(reinterpret_cast<const char*>(data), size);
    std::string left = body;
    if (!velmora::StripMimeText(left)) {
        if (left != body) std::abort();
    } else if (body.find(left) == std::string::npos || (!left.empty() && left.back() != '-')) {
        std::abort();
    }
    return 0;
}
