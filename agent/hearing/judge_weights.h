#pragma once

#include "agent/hearing/judge.h"

namespace agent {

// Learned by `velmora-hearing`, see docs/hearing.md.
constexpr JudgeWeights weightsWithTranscript{3.0289,
                                             {2.09578, 0.86021, -1.44456, -0.539522, -0.125324, 0.98702,
                                              0.834546, -0.353568, -1.49753, 0.0591705, 0.826434, -1.19675}};
constexpr JudgeWeights weightsWithoutTranscript{-4.67841,
                                                {0, 0, 6.22037e-05, -0.649532, -0.42377, 1.83403, 3.09251,
                                                 1.9353, -3.11231, -0.0950333, -8.21745, -2.73706}};

}  // namespace agent
