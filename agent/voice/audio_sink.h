#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

namespace agent {

/// Where samples of one channel go, at the pace at which they are heard. Used by one thread.
class AudioSink {
public:
    virtual ~AudioSink() = default;

    /// Takes samples, waiting until there is room for them. False: the device is lost.
    virtual bool write(std::span<const std::int16_t> samples) = 0;

    /// How long from now until what was written last is heard.
    virtual std::chrono::microseconds delay() = 0;

    /// Forgets what is written and not yet heard.
    virtual void drop() = 0;
};

/// Waits until a time, or shorter if the wait is called off.
using WaitUntil = std::function<void(std::chrono::steady_clock::time_point)>;

/// No sound at all, at the pace of the clock.
std::unique_ptr<AudioSink> openSilence(int sampleRate, WaitUntil wait);

/// These give null where there is no such device; they print nothing.
std::unique_ptr<AudioSink> openPulse(int sampleRate);
std::unique_ptr<AudioSink> openAlsa(int sampleRate);

/// A WAV file that is whole after every write, at the pace of the clock. Null where it can't be written.
/// `append` goes on with the file that this program has begun.
std::unique_ptr<AudioSink> openWav(const std::string& path, bool append, int sampleRate, WaitUntil wait);

}  // namespace agent
