#include "tools/hearing/learning.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>

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

agent::JudgeWeights learn(const std::vector<Example>& examples) {
    constexpr int rounds = 8000;
    constexpr double pace = 2;
    const Scale scale = scaleOf(examples);
    const double share = 1 / static_cast<double>(examples.size());
    const double regularisation = share;  // weights of a usual size cost no more than an example
    agent::JudgeWeights found;
    for (int round = 0; round < rounds; ++round) {
        agent::JudgeWeights slope;
        for (const Example& example : examples) {
            double sum = found.bias;
            for (std::size_t i = 0; i < signals; ++i)
                sum +=
                    found.weights.at(i) * (example.signals.at(i) - scale.mean.at(i)) / scale.deviation.at(i);
            const double error = share * ((example.right ? 1.0 : 0.0) - 1 / (1 + std::exp(-sum)));
            slope.bias += error;
            for (std::size_t i = 0; i < signals; ++i)
                slope.weights.at(i) +=
                    error * (example.signals.at(i) - scale.mean.at(i)) / scale.deviation.at(i);
        }
        found.bias += pace * slope.bias;
        for (std::size_t i = 0; i < signals; ++i) {
            const double change = slope.weights.at(i) - regularisation * found.weights.at(i);
            found.weights.at(i) += pace * change;
        }
    }
    for (std::size_t i = 0; i < signals; ++i) {
        found.weights.at(i) /= scale.deviation.at(i);
        found.bias -= found.weights.at(i) * scale.mean.at(i);
    }
    return found;
}

std::vector<double> crossValidate(const std::vector<Example>& examples) {
    constexpr std::size_t parts = 8;
    std::map<std::string, std::size_t> partOf;
    for (const Example& example : examples) partOf.emplace(example.voice, 0);
    std::size_t number = 0;
    for (auto& [voice, part] : partOf) part = number++ % parts;
    std::vector<double> likelihoods(examples.size());
    for (std::size_t part = 0; part < parts; ++part) {
        std::vector<Example> others;
        std::ranges::copy_if(examples, std::back_inserter(others),
                             [&](const Example& example) { return partOf.at(example.voice) != part; });
        const agent::JudgeWeights weights = learn(others);
        for (std::size_t i = 0; i < examples.size(); ++i) {
            if (partOf.at(examples[i].voice) == part)
                likelihoods[i] = weights.likelihood(examples[i].signals);
        }
    }
    return likelihoods;
}

}  // namespace velmora::hearing
