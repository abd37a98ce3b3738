#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace agent {

/// How far a device has come.
struct Playback {
    std::chrono::microseconds left;  ///< from now until what was written last is heard
    bool moving;                     ///< false: it has not begun, or stands still, and `left` with it
};

/// A loudspeaker for samples of one channel. Used by one thread; none of its calls waits for sound to be
/// played, though a driver may hang in any of them.
class AudioDevice {
public:
    virtual ~AudioDevice() = default;

    /// Takes as many of the samples as there is room for now, and says how many. Nothing: it is lost. Called
    /// often until all is heard, at last with none.
    virtual std::optional<std::size_t> write(std::span<const std::int16_t> samples) = 0;

    /// Where it is now.
    virtual Playback playback() = 0;

    /// Forgets what was written and is not yet heard.
    virtual void drop() = 0;
};

/// Opens a device for samples at this rate; gives null where there is none.
using OpenDevice = std::function<std::unique_ptr<AudioDevice>(int sampleRate)>;

/// Null where there is no such device; prints nothing.
std::unique_ptr<AudioDevice> openAlsa(int sampleRate);

}  // namespace agent
