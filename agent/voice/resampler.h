#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace agent {

/// Turns samples, as they come, into those of another rate, by straight lines between them.
class Resampler {
public:
    /// Both in samples a second, above 0.
    Resampler(int from, int to);

    /// Goes on where the samples before ended.
    std::vector<std::int16_t> resample(std::span<const std::int16_t> samples);

    /// How many samples of the new rate last as long as `count` of the old one.
    std::size_t scaled(std::size_t count) const { return count * to_ / from_; }

private:
    std::size_t from_;
    std::size_t to_;
    std::size_t taken_ = 0;  ///< of the old rate
    std::size_t given_ = 0;  ///< of the new one
    std::int16_t last_ = 0;
};

}  // namespace agent
