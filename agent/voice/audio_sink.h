#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace agent {

class Recordings;

/// Where samples of one channel go. Used by one thread.
class AudioSink {
public:
    virtual ~AudioSink() = default;

    /// Takes samples. A device waits until it has room for them. False: it is lost.
    virtual bool write(std::span<const std::int16_t> samples) = 0;

    /// How long from now until what was written last is heard; nothing where that is the clock's to say: in a
    /// file, or once the device is lost.
    virtual std::optional<std::chrono::microseconds> delay() = 0;

    /// Forgets the last `unheard` of the samples written, which have not been heard.
    virtual void drop(std::size_t unheard) = 0;
};

/// Opens a sink for samples at this rate; gives null where there is none.
using OpenSink = std::function<std::unique_ptr<AudioSink>(int sampleRate)>;

/// These give null where there is no such device; they print nothing, and may wait for a server that hangs.
std::unique_ptr<AudioSink> openPulse(int sampleRate);
std::unique_ptr<AudioSink> openAlsa(int sampleRate);

/// Opens the device that a setting names: "default", "none" (always null) or "file:PATH", one of
/// `recordings`. Sinks of a device never wait: one that hangs keeps what it is given, and is not opened anew
/// until it has come round.
OpenSink outputDevice(const std::string& setting, Recordings& recordings);

}  // namespace agent
