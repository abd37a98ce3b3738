#include <alsa/asoundlib.h>

#include "agent/voice/audio_sink.h"

namespace agent {
namespace {

struct Close {
    void operator()(snd_pcm_t* device) const { snd_pcm_close(device); }
};
using Device = std::unique_ptr<snd_pcm_t, Close>;

class AlsaSink : public AudioSink {
public:
    AlsaSink(Device device, int sampleRate) : device_(std::move(device)), sampleRate_(sampleRate) {}

    bool write(std::span<const std::int16_t> samples) override {
        while (!samples.empty()) {
            auto written = snd_pcm_writei(device_.get(), samples.data(), samples.size());
            if (written < 0) {
                if (snd_pcm_recover(device_.get(), static_cast<int>(written), 1) < 0) return false;
                continue;
            }
            samples = samples.subspan(static_cast<std::size_t>(written));
        }
        // Of its own accord it begins with a full buffer only.
        if (snd_pcm_state(device_.get()) == SND_PCM_STATE_PREPARED) snd_pcm_start(device_.get());
        return true;
    }

    std::optional<std::chrono::microseconds> delay() override {
        snd_pcm_sframes_t frames = 0;
        if (snd_pcm_delay(device_.get(), &frames) < 0 || frames < 0) frames = 0;
        return std::chrono::microseconds(frames * 1'000'000 / sampleRate_);
    }

    void drop(std::size_t) override {
        snd_pcm_drop(device_.get());
        snd_pcm_prepare(device_.get());
    }

private:
    Device device_;
    int sampleRate_;
};

void keepQuiet(const char*, int, const char*, int, const char*, ...) {}

}  // namespace

std::unique_ptr<AudioSink> openAlsa(int sampleRate) {
    constexpr unsigned buffered = 80'000;
    snd_lib_error_set_handler(&keepQuiet);
    snd_pcm_t* opened = nullptr;
    if (snd_pcm_open(&opened, "default", SND_PCM_STREAM_PLAYBACK, 0) < 0) return nullptr;
    Device device(opened);
    if (snd_pcm_set_params(device.get(), SND_PCM_FORMAT_S16, SND_PCM_ACCESS_RW_INTERLEAVED, 1,
                           static_cast<unsigned>(sampleRate), 1, buffered) < 0) {
        return nullptr;
    }
    return std::make_unique<AlsaSink>(std::move(device), sampleRate);
}

}  // namespace agent
