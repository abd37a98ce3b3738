#include "tools/hearing/noise.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace velmora::hearing {

agent::Samples withNoise(agent::Samples samples, unsigned seed, double decibels) {
    const double ratio = std::pow(10, decibels / 20);  // of amplitudes
    std::vector<double> squares;
    for (const std::int16_t sample : samples) squares.push_back(static_cast<double>(sample) * sample);
    std::ranges::sort(squares, std::greater());
    squares.resize(squares.size() / 2);
    double sum = 0;
    for (const double square : squares) sum += square;
    const double loudness = std::sqrt(sum / static_cast<double>(std::max<std::size_t>(squares.size(), 1)));

    std::mt19937 engine(seed);
    std::normal_distribution<double> white;
    // Half white, half with the high tones damped, as of a fan.
    double damped = 0;
    constexpr double damping = 0.9;
    const double gain = loudness / ratio / std::sqrt(2.0);
    for (std::int16_t& sample : samples) {
        const double value = white(engine);
        damped = damping * damped + std::sqrt(1 - damping * damping) * white(engine);
        const double noisy = sample + gain * (value + damped);
        sample = static_cast<std::int16_t>(std::clamp(std::lround(noisy), -32768L, 32767L));
    }
    return samples;
}

}  // namespace velmora::hearing
