#pragma once

#include "agent/hearing/judge.h"

namespace agent {

// Learned by `velmora-hearing`, see docs/hearing.md.
constexpr JudgeWeights weightsWithTranscript{2.94749,
                                             {2.10862, 0.475835, -2.11898, -0.472386, -0.228738, 1.14404,
                                              1.04556, -0.218548, -2.28106, 0.00533219, 0.685432, -0.547908}};
constexpr JudgeWeights weightsWithoutTranscript{-4.44442,
                                                {0, 0, 3.73284e-05, -0.750991, -0.431632, 1.5955, 3.10167,
                                                 1.47688, -2.88258, -0.107427, -8.56921, -2.43635}};

}  // namespace agent
