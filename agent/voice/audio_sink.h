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

/// Where samples of one channel go. Used by one thread; never waits.
class AudioSink {
public:
    virtual ~AudioSink() = default;

    /// Takes samples. False: it is lost.
    virtual bool write(std::span<const std::int16_t> samples) = 0;

    /// How long from now until what was written last is heard; nothing where that is the clock's to say: in a
    /// file, or once the device is lost.
    virtual std::optional<std::chrono::microseconds> delay() = 0;

    /// Forgets the last `unheard` of the samples written, which have not been heard.
    virtual void drop(std::size_t unheard) = 0;
};

/// Opens a sink for samples at this rate; gives null where there is none.
using OpenSink = std::function<std::unique_ptr<AudioSink>(int sampleRate)>;

/// Opens the device that a setting names: "default", "none" (always null) or "file:PATH", one of
/// `recordings`. A device that hangs keeps what it is given.
OpenSink outputDevice(const std::string& setting, Recordings& recordings);

}  // namespace agent
