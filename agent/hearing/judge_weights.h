#pragma once

#include "agent/hearing/judge.h"

namespace agent {

/// What each signal of a phrase counts for; learned by `velmora-hearing`, see docs/hearing.md.
constexpr double judgeBias = -1.43832;
constexpr Signals judgeWeights{-0.561888, -0.249487, -0.141124, -0.494628, 1.02929,  -2.10966,  -3.74437,
                               -0.629042, 1.8671,    1.94381,   1.36467,   0.886507, -0.255299, 2.89184};

}  // namespace agent
