#pragma once

#include <string>
#include <vector>

#include "agent/hearing/judge.h"

namespace velmora::hearing {

/// A phrase with what is known about it.
struct Example {
    agent::Signals signals;
    bool right;  ///< whether it was the command that it was taken for
    std::string voice = {};
};

/// What each signal counts for, and what is added to their sum.
struct Weights {
    double bias = 0;
    agent::Signals weights{};
};

/// The sum of the weighted signals and the bias: above 0, it is likelier right than not.
double sumOf(const Weights& weights, const agent::Signals& signals);

/// Logistic regression, regularised, with both kinds of examples counting the same in all. Gives the
/// same weights for the same examples.
Weights learn(const std::vector<Example>& examples);

/// The sum of each example with weights that were learned without the voices of its fifth of all voices.
std::vector<double> crossValidate(const std::vector<Example>& examples);

}  // namespace velmora::hearing
