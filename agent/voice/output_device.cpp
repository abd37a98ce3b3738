#include <string_view>
#include <utility>
#include <vector>

#include "agent/voice/audio_sink.h"
#include "agent/voice/device_thread.h"
#include "agent/voice/pulse_server.h"
#include "agent/voice/recordings.h"

namespace agent {
namespace {

constexpr std::string_view filePrefix = "file:";

// The sound server or else the sound card, which is opened for each line: it may be for one program alone.
class Loudspeaker {
public:
    Loudspeaker()
        : connection_(
              [server = server_](int) {
                  server->connect();
                  return nullptr;
              },
              0) {}

    std::unique_ptr<AudioSink> open(int sampleRate) {
        // Each attempt on a server that hangs leaves a thread behind.
        constexpr std::size_t most = 3;
        std::erase_if(lines_, [](const auto& line) { return line.expired(); });
        if (lines_.size() >= most) return nullptr;
        auto line = std::make_unique<DeviceThread>(
            [server = server_](int rate) {
                auto device = server->open(rate);
                return device ? std::move(device) : openAlsa(rate);
            },
            sampleRate);
        lines_.push_back(line->life());
        return line;
    }

private:
    std::shared_ptr<PulseServer> server_ = std::make_shared<PulseServer>();
    DeviceThread connection_;  ///< is made before there is anything to say
    std::vector<std::weak_ptr<const void>> lines_;
};

}  // namespace

OpenSink outputDevice(const std::string& setting, Recordings& recordings) {
    if (setting.starts_with(filePrefix)) return recordings.file(setting.substr(filePrefix.size()));
    if (setting == "none") return [](int) { return nullptr; };
    return [speaker = std::make_shared<Loudspeaker>()](int sampleRate) { return speaker->open(sampleRate); };
}

}  // namespace agent
