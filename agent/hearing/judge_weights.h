#pragma once

#include "agent/hearing/judge.h"

namespace agent {

/// What each signal of a phrase counts for; learned by `velmora-hearing`, see docs/hearing.md.
constexpr double judgeBias = 0.18276;
constexpr Signals judgeWeights{-0.401531, -0.195174, -0.236275, -0.262833, 0.277267,  -2.07485, -0.838052,
                               -0.137921, -7.65401,  1.13101,   1.45427,   -0.402651, -2.96958, 0.985301};

}  // namespace agent
