#include <alsa/asoundlib.h>

#include <algorithm>
#include <thread>
#include <utility>

#include "agent/voice/audio_device.h"

namespace agent {
namespace {

struct Close {
    void operator()(snd_pcm_t* device) const { snd_pcm_close(device); }
};
using Pcm = std::unique_ptr<snd_pcm_t, Close>;

class AlsaDevice : public AudioDevice {
public:
    AlsaDevice(Pcm pcm, int sampleRate) : pcm_(std::move(pcm)), sampleRate_(sampleRate) {}

    std::optional<std::size_t> write(std::span<const std::int16_t> samples) override {
        const auto room = snd_pcm_avail_update(pcm_.get());
        if (room < 0) return recovered(room);
        const auto count = std::min(samples.size(), static_cast<std::size_t>(room));
        if (count == 0) return 0;
        const auto written = snd_pcm_writei(pcm_.get(), samples.data(), count);
        if (written < 0) return recovered(written);
        // Of its own accord it begins with a full buffer only.
        if (snd_pcm_state(pcm_.get()) == SND_PCM_STATE_PREPARED) snd_pcm_start(pcm_.get());
        return static_cast<std::size_t>(written);
    }

    Playback playback() override {
        snd_pcm_sframes_t frames = 0;
        if (snd_pcm_delay(pcm_.get(), &frames) < 0 || frames < 0) frames = 0;
        return {std::chrono::microseconds(frames * 1'000'000 / sampleRate_),
                snd_pcm_state(pcm_.get()) == SND_PCM_STATE_RUNNING};
    }

    void drop() override {
        snd_pcm_drop(pcm_.get());
        snd_pcm_prepare(pcm_.get());
    }

private:
    std::optional<std::size_t> recovered(snd_pcm_sframes_t error) {
        if (error == -EAGAIN || snd_pcm_recover(pcm_.get(), static_cast<int>(error), 1) >= 0) return 0;
        return std::nullopt;
    }

    Pcm pcm_;
    int sampleRate_;
};

void keepQuiet(const char*, int, const char*, int, const char*, ...) {}

// A sound card may be for one user at a time, and the line before may be letting go of it only now.
Pcm openFree(std::chrono::milliseconds patience) {
    const auto giveUp = std::chrono::steady_clock::now() + patience;
    snd_pcm_t* pcm = nullptr;
    int error = 0;
    while ((error = snd_pcm_open(&pcm, "default", SND_PCM_STREAM_PLAYBACK, SND_PCM_NONBLOCK)) == -EBUSY &&
           std::chrono::steady_clock::now() < giveUp) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return Pcm(error < 0 ? nullptr : pcm);
}

}  // namespace

std::unique_ptr<AudioDevice> openAlsa(int sampleRate) {
    constexpr unsigned buffered = 80'000;
    snd_lib_error_set_handler(&keepQuiet);
    Pcm pcm = openFree(std::chrono::milliseconds(200));
    if (!pcm || snd_pcm_set_params(pcm.get(), SND_PCM_FORMAT_S16, SND_PCM_ACCESS_RW_INTERLEAVED, 1,
                                   static_cast<unsigned>(sampleRate), 1, buffered) < 0) {
        return nullptr;
    }
    return std::make_unique<AlsaDevice>(std::move(pcm), sampleRate);
}

}  // namespace agent
