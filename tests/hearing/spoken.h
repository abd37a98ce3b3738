#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "agent/hearing/wav_reader.h"

namespace velmora::test {

/// The words as the speech synthesiser says them, 16000 samples a second, a little silence around them.
agent::Samples spoken(const std::string& words, const std::string& speaker = "en-us");

struct WavForm {
    unsigned kind = 1;  ///< 1: whole numbers, 3: floating point
    unsigned channels = 1;
    unsigned rate = 16000;
    unsigned bits = 16;
};

/// A WAV file's bytes: its header, and whatever follows it.
std::string wavBytes(const WavForm& form, std::string_view data, std::uint32_t promised);
/// A WAV file of these samples.
std::string wavBytes(const agent::Samples& samples);

/// Writes the bytes into a new file of that name in the tests' temporary folder. Returns its path.
std::string temporaryFile(const std::string& name, std::string_view bytes);

}  // namespace velmora::test
