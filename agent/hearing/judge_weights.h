#pragma once

#include "agent/hearing/judge.h"

namespace agent {

/// What each signal of a phrase counts for; learned by `velmora-hearing`, see docs/hearing.md.
constexpr double judgeBias = 0.197709;
constexpr Signals judgeWeights{-0.269548, -0.139693, -0.25423, -0.17069, -0.0443594, -0.519842, -0.255093, 0,
                               -6.85522,  0.61072,   0.788943, -4.54336, -1.14392,   0,         -0.31567};

}  // namespace agent
