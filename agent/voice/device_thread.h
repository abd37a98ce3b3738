#pragma once

#include <memory>

#include "agent/voice/audio_device.h"
#include "agent/voice/audio_sink.h"

namespace agent {

/// A device that may hang, in a thread of its own: nothing waits for it.
class DeviceThread : public AudioSink {
public:
    /// Begins to open the device. `open` is called, and its device used and destroyed, in the thread.
    DeviceThread(OpenDevice open, int sampleRate);

    /// Waits a moment for the device to be closed. One that hangs is left to itself.
    ~DeviceThread() override;

    DeviceThread(const DeviceThread&) = delete;
    DeviceThread& operator=(const DeviceThread&) = delete;

    bool write(std::span<const std::int16_t> samples) override;
    std::optional<std::chrono::microseconds> delay() override;
    void drop(std::size_t unheard) override;

    /// Expires when the device is closed, which may be after this is destroyed.
    std::weak_ptr<const void> life() const;

private:
    struct Shared;

    static void run(const std::shared_ptr<Shared>& shared, OpenDevice open);

    std::shared_ptr<Shared> shared_;
};

}  // namespace agent
