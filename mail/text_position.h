#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmora {

/// The number in 16 bits. Fails with 6 for one that they can't hold.
std::int16_t toPosition(std::ptrdiff_t number);

/// Where `wanted` begins in the text, byte for byte, counted from 1; 0 if it is not there. Fails with 6 if
/// that is behind 32767.
std::int16_t positionOf(std::string_view text, std::string_view wanted);

}  // namespace velmora
