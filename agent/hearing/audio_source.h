#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace agent {

/// Where sound comes from: one channel at 16000 samples a second. Used by one thread.
class AudioSource {
public:
    virtual ~AudioSource() = default;
    /// Fills the samples, waiting for them. False: there is no more, or the device is lost.
    virtual bool read(std::span<std::int16_t> samples) = 0;
};

/// These give null, at once, where there is no such device; they print nothing.
std::unique_ptr<AudioSource> openPulseSource();
std::unique_ptr<AudioSource> openAlsaSource();

/// The microphone of the sound server, else of the sound card; null if there is neither.
std::unique_ptr<AudioSource> openMicrophone();

}  // namespace agent
