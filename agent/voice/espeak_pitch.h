#pragma once

#include <algorithm>
#include <array>

namespace agent {

/// The pitch parameter, 0 to 99, with which espeak's English voice speaks at `hertz`; those it can't reach
/// are taken as the nearest.
constexpr int espeakPitch(int hertz) {
    struct Measured {
        int hertz;
        int pitch;
    };
    constexpr std::array<Measured, 6> line = {{{54, 0}, {59, 10}, {69, 25}, {89, 50}, {119, 75}, {158, 99}}};
    hertz = std::clamp(hertz, line.front().hertz, line.back().hertz);
    std::size_t i = 1;
    while (line.at(i).hertz < hertz) ++i;
    const Measured below = line.at(i - 1);
    const Measured above = line.at(i);
    return below.pitch + (above.pitch - below.pitch) * (hertz - below.hertz) / (above.hertz - below.hertz);
}

}  // namespace agent
