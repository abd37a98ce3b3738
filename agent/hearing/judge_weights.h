#pragma once

#include "agent/hearing/judge.h"

namespace agent {

// Learned by `velmora-hearing`, see docs/hearing.md.
constexpr JudgeWeights weightsWithTranscript{2.82741,
                                             {2.04124, 0.69743, -2.15291, -0.45252, -0.234951, 1.06027,
                                              1.09165, -0.245046, -2.11009, 0.0106791, 0.635176, -0.797764}};
constexpr JudgeWeights weightsWithoutTranscript{-4.44442,
                                                {0, 0, 3.73284e-05, -0.750991, -0.431632, 1.5955, 3.10167,
                                                 1.47688, -2.88258, -0.107427, -8.56921, -2.43635}};

}  // namespace agent
