#include "mail/text_position.h"

#include <limits>

#include "base/failure.h"

namespace velmora {

std::int16_t toPosition(std::ptrdiff_t number) {
    using Limits = std::numeric_limits<std::int16_t>;
    if (number < Limits::min() || number > Limits::max()) throw Failure(errors::overflow);
    return static_cast<std::int16_t>(number);
}

std::int16_t positionOf(std::string_view text, std::string_view wanted) {
    const auto found = text.find(wanted);
    return found == std::string_view::npos ? std::int16_t{0}
                                           : toPosition(static_cast<std::ptrdiff_t>(found) + 1);
}

}  // namespace velmora
