#pragma once

#include <vector>

#include "agent/hearing/judge.h"

namespace velmora::hearing {

/// A phrase with what is known about it.
struct Example {
    agent::Signals signals;
    bool right;  ///< whether it was the command that it was taken for
};

/// What each signal counts for, and what is added to their sum.
struct Weights {
    double bias = 0;
    agent::Signals weights{};
};

/// Logistic regression, lightly regularised, with both kinds of examples counting the same in all. Gives the
/// same weights for the same examples.
Weights learn(const std::vector<Example>& examples);

}  // namespace velmora::hearing
