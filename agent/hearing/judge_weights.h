#pragma once

#include "agent/hearing/judge.h"

namespace agent {

/// What each signal of a phrase counts for; learned by `velmora-hearing`, see docs/hearing.md.
constexpr double judgeBias = 0;
constexpr Signals judgeWeights{};

}  // namespace agent
