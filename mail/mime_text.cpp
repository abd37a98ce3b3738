#include "mail/mime_text.h"

#include <cstdint>
#include <string_view>

#include "base/failure.h"
#include "mail/text_position.h"

namespace velmora {
namespace {

constexpr std::string_view boundary = "------=_";
constexpr std::string_view encodingEnd = "bit";  // of "7bit" or "8bit", the last header of a part

}  // namespace

bool StripMimeText(std::string& body) {
    bool marked = false;
    passOver([&] { marked = positionOf(body, boundary) != 0; });
    if (!marked) return false;
    std::int16_t encoding = 0;
    std::int16_t end = 0;
    passOver([&] { encoding = positionOf(body, encodingEnd); },
             [&] {
                 const auto dropped = static_cast<std::size_t>(toPosition(encoding + 3));
                 if (dropped > body.size()) throw Failure(errors::invalidCall);
                 body.erase(0, dropped);
             },
             [&] { end = positionOf(body, boundary); },
             [&] {
                 body.resize(static_cast<std::size_t>(end));
                 body.shrink_to_fit();
             });
    return true;
}

}  // namespace velmora
