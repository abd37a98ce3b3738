#include <string_view>
#include <utility>

#include "agent/voice/audio_sink.h"
#include "agent/voice/device_thread.h"
#include "agent/voice/recordings.h"

namespace agent {
namespace {

constexpr std::string_view filePrefix = "file:";

std::unique_ptr<AudioSink> openLoudspeaker(int sampleRate) {
    auto device = openPulse(sampleRate);
    return device ? std::move(device) : openAlsa(sampleRate);
}

OpenSink loudspeaker() {
    return [last = std::weak_ptr<const void>()](int sampleRate) mutable -> std::unique_ptr<AudioSink> {
        // Each attempt on a server that hangs would leave a thread behind.
        if (!last.expired()) return nullptr;
        auto device = std::make_unique<DeviceThread>(&openLoudspeaker, sampleRate);
        last = device->life();
        return device;
    };
}

}  // namespace

OpenSink outputDevice(const std::string& setting, Recordings& recordings) {
    if (setting.starts_with(filePrefix)) return recordings.file(setting.substr(filePrefix.size()));
    if (setting == "none") return [](int) { return nullptr; };
    return loudspeaker();
}

}  // namespace agent
