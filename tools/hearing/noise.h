#pragma once

#include "agent/hearing/wav_reader.h"

namespace velmora::hearing {

/// The sound with noise of a steady room, so many decibels below its loudest half; the same noise for the
/// same seed.
agent::Samples withNoise(agent::Samples samples, unsigned seed, double decibels);

}  // namespace velmora::hearing
