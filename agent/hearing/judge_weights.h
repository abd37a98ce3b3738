#pragma once

#include "agent/hearing/judge.h"

namespace agent {

// Learned by `velmora-hearing`, see docs/hearing.md.
constexpr JudgeWeights weightsWithTranscript{2.25298,
                                             {2.22664, 0.00875828, -4.0074, -0.6628, -0.161603, 1.85882,
                                              1.18526, 2.0282, -2.41207, -0.154595, 3.11919, -0.986784}};
constexpr JudgeWeights weightsWithoutTranscript{-3.82902,
                                                {0, 0, -4.7431e-09, -0.905851, -0.399213, 1.48509, 2.8908,
                                                 0.244143, -2.38916, -0.0739946, -10.3753, -1.64075}};

}  // namespace agent
