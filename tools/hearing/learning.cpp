#include "tools/hearing/learning.h"

#include <algorithm>
#include <cmath>

namespace velmora::hearing {
namespace {

constexpr std::size_t signals = agent::signalCount;

struct Scale {
    agent::Signals mean{};
    agent::Signals deviation{};
};

Scale scaleOf(const std::vector<Example>& examples) {
    Scale scale;
    const auto count = static_cast<double>(examples.size());
    for (std::size_t i = 0; i < signals; ++i) {
        for (const Example& example : examples) scale.mean.at(i) += example.signals.at(i) / count;
        for (const Example& example : examples)
            scale.deviation.at(i) += std::pow(example.signals.at(i) - scale.mean.at(i), 2) / count;
        scale.deviation.at(i) = std::max(std::sqrt(scale.deviation.at(i)), 1e-6);
    }
    return scale;
}

}  // namespace

Weights learn(const std::vector<Example>& examples) {
    constexpr int rounds = 4000;
    constexpr double pace = 0.5;
    constexpr double regularisation = 0.01;
    const Scale scale = scaleOf(examples);
    const auto right = static_cast<double>(std::ranges::count(examples, true, &Example::right));
    const double wrong = static_cast<double>(examples.size()) - right;
    Weights found;
    for (int round = 0; round < rounds; ++round) {
        Weights slope;
        for (const Example& example : examples) {
            double sum = found.bias;
            for (std::size_t i = 0; i < signals; ++i)
                sum +=
                    found.weights.at(i) * (example.signals.at(i) - scale.mean.at(i)) / scale.deviation.at(i);
            const double share = 0.5 / (example.right ? right : wrong);
            const double error = share * ((example.right ? 1.0 : 0.0) - 1 / (1 + std::exp(-sum)));
            slope.bias += error;
            for (std::size_t i = 0; i < signals; ++i)
                slope.weights.at(i) +=
                    error * (example.signals.at(i) - scale.mean.at(i)) / scale.deviation.at(i);
        }
        found.bias += pace * slope.bias;
        for (std::size_t i = 0; i < signals; ++i)
            found.weights.at(i) += pace * (slope.weights.at(i) - regularisation * found.weights.at(i));
    }
    for (std::size_t i = 0; i < signals; ++i) {
        found.weights.at(i) /= scale.deviation.at(i);
        found.bias -= found.weights.at(i) * scale.mean.at(i);
    }
    return found;
}

}  // namespace velmora::hearing
