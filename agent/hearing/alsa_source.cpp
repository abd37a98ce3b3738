#include <alsa/asoundlib.h>

#include "agent/hearing/audio_source.h"
#include "agent/hearing/wav_reader.h"

namespace agent {
namespace {

struct Close {
    void operator()(snd_pcm_t* device) const { snd_pcm_close(device); }
};
using Device = std::unique_ptr<snd_pcm_t, Close>;

class AlsaSource : public AudioSource {
public:
    explicit AlsaSource(Device device) : device_(std::move(device)) {}

    bool read(std::span<std::int16_t> samples) override {
        while (!samples.empty()) {
            const auto got = snd_pcm_readi(device_.get(), samples.data(), samples.size());
            if (got < 0 && snd_pcm_recover(device_.get(), static_cast<int>(got), 1) < 0) return false;
            if (got > 0) samples = samples.subspan(static_cast<std::size_t>(got));
        }
        return true;
    }

private:
    Device device_;
};

void keepQuiet(const char*, int, const char*, int, const char*, ...) {}

}  // namespace

std::unique_ptr<AudioSource> openAlsaSource() {
    constexpr unsigned buffered = 1'000'000;  // microseconds: a phrase is weighed meanwhile
    snd_lib_error_set_handler(&keepQuiet);
    snd_pcm_t* opened = nullptr;
    if (snd_pcm_open(&opened, "default", SND_PCM_STREAM_CAPTURE, 0) < 0) return nullptr;
    Device device(opened);
    if (snd_pcm_set_params(device.get(), SND_PCM_FORMAT_S16, SND_PCM_ACCESS_RW_INTERLEAVED, 1, hearingRate, 1,
                           buffered) < 0) {
        return nullptr;
    }
    return std::make_unique<AlsaSource>(std::move(device));
}

std::unique_ptr<AudioSource> openMicrophone() {
    auto source = openPulseSource();
    return source ? std::move(source) : openAlsaSource();
}

}  // namespace agent
