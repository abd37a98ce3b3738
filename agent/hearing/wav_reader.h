#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace agent {

/// One channel at 16000 samples a second: what the recogniser listens to.
using Samples = std::vector<std::int16_t>;
constexpr int hearingRate = 16000;

/// The sound of a WAV file (plain samples of 8, 16, 24 or 32 bits or 32-bit floating point, 1 to 8 channels,
/// 1000 to 384000 samples a second), its channels mixed into one; or a sentence that says why it can't be
/// had. A header that promises more than the file holds is not believed. Refuses all but regular files and
/// whatever lasts longer than ten minutes, so that it takes at most about 20 MB.
std::variant<Samples, std::string> readWav(const std::string& path);

}  // namespace agent
