#include <pulse/simple.h>

#include "agent/voice/audio_sink.h"

namespace agent {
namespace {

struct Close {
    void operator()(pa_simple* stream) const { pa_simple_free(stream); }
};

class PulseSink : public AudioSink {
public:
    explicit PulseSink(pa_simple* stream) : stream_(stream) {}

    bool write(std::span<const std::int16_t> samples) override {
        return pa_simple_write(stream_.get(), samples.data(), samples.size_bytes(), nullptr) >= 0;
    }

    std::optional<std::chrono::microseconds> delay() override {
        int error = 0;
        const pa_usec_t latency = pa_simple_get_latency(stream_.get(), &error);
        return std::chrono::microseconds(error != 0 ? 0 : static_cast<std::int64_t>(latency));
    }

    void drop(std::size_t) override { pa_simple_flush(stream_.get(), nullptr); }

private:
    std::unique_ptr<pa_simple, Close> stream_;
};

}  // namespace

std::unique_ptr<AudioSink> openPulse(int sampleRate) {
    const pa_sample_spec format{
        .format = PA_SAMPLE_S16NE, .rate = static_cast<std::uint32_t>(sampleRate), .channels = 1};
    constexpr pa_usec_t buffered = 80'000;
    constexpr pa_usec_t asked = 10'000;
    constexpr auto open = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{.maxlength = open,
                                .tlength = static_cast<std::uint32_t>(pa_usec_to_bytes(buffered, &format)),
                                .prebuf = 0,  // a short word alone would not fill a buffer
                                .minreq = static_cast<std::uint32_t>(pa_usec_to_bytes(asked, &format)),
                                .fragsize = open};
    pa_simple* stream = pa_simple_new(nullptr, "Velmora", PA_STREAM_PLAYBACK, nullptr, "Speech", &format,
                                      nullptr, &buffer, nullptr);
    if (stream == nullptr) return nullptr;
    return std::make_unique<PulseSink>(stream);
}

}  // namespace agent
