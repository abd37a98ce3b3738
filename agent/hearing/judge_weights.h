#pragma once

#include "agent/hearing/judge.h"

namespace agent {

/// What each signal of a phrase counts for; learned by `velmora-hearing`, see docs/hearing.md.
constexpr double judgeBias = 0.848534;
constexpr Signals judgeWeights{-0.268173, -0.149172, -0.243079, -0.156708, -0.199379, -0.543431, -0.376938, 0,
                               -6.31969,  0.548643,  0.908803,  -4.76439,  -1.33468,  0,         -0.439314};

}  // namespace agent
