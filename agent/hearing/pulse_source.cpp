#include <pulse/simple.h>

#include "agent/hearing/audio_source.h"
#include "agent/hearing/wav_reader.h"

namespace agent {
namespace {

struct Close {
    void operator()(pa_simple* stream) const { pa_simple_free(stream); }
};

class PulseSource : public AudioSource {
public:
    explicit PulseSource(pa_simple* stream) : stream_(stream) {}

    bool read(std::span<std::int16_t> samples) override {
        return pa_simple_read(stream_.get(), samples.data(), samples.size_bytes(), nullptr) >= 0;
    }

private:
    std::unique_ptr<pa_simple, Close> stream_;
};

}  // namespace

std::unique_ptr<AudioSource> openPulseSource() {
    const pa_sample_spec format{.format = PA_SAMPLE_S16NE, .rate = hearingRate, .channels = 1};
    constexpr pa_usec_t piece = 20'000;
    constexpr auto open = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{.maxlength = open,  // much: a phrase is weighed while the next one is spoken
                                .tlength = open,
                                .prebuf = open,
                                .minreq = open,
                                .fragsize = static_cast<std::uint32_t>(pa_usec_to_bytes(piece, &format))};
    pa_simple* stream = pa_simple_new(nullptr, "Velmora", PA_STREAM_RECORD, nullptr, "Spoken commands",
                                      &format, nullptr, &buffer, nullptr);
    if (stream == nullptr) return nullptr;
    return std::make_unique<PulseSource>(stream);
}

}  // namespace agent
