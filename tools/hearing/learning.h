#pragma once

#include <string>
#include <vector>

#include "agent/hearing/judge.h"

namespace velmora::hearing {

/// A command that a phrase may have been.
struct Example {
    agent::Signals signals;
    bool right;  ///< whether it was
    std::string voice = {};
};

/// Logistic regression, regularised, with both kinds of examples counting the same in all. Gives the
/// same weights for the same examples.
agent::JudgeWeights learn(const std::vector<Example>& examples);

/// The likelihood of each example with weights that were learned without the voices of its eighth of all
/// voices.
std::vector<double> crossValidate(const std::vector<Example>& examples);

}  // namespace velmora::hearing
