#include "agent/voice/pulse_server.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace agent {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

class Lock {
public:
    explicit Lock(pa_threaded_mainloop* loop) : loop_(loop) { pa_threaded_mainloop_lock(loop_); }
    ~Lock() { pa_threaded_mainloop_unlock(loop_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    pa_threaded_mainloop* loop_;
};

void forget(pa_operation* operation) {
    if (operation != nullptr) pa_operation_unref(operation);
}

struct Cancel {
    void operator()(pa_operation* operation) const {
        pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
};

template <class Object>
void wakeWaiting(Object*, void* loop) {
    pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop*>(loop), 0);
}

pa_buffer_attr buffering(const pa_sample_spec& format) {
    constexpr pa_usec_t buffered = 80'000;
    constexpr pa_usec_t asked = 10'000;
    constexpr auto open = static_cast<std::uint32_t>(-1);
    return {.maxlength = open,
            .tlength = static_cast<std::uint32_t>(pa_usec_to_bytes(buffered, &format)),
            .prebuf = static_cast<std::uint32_t>(pa_frame_size(&format)),  // what comes late is not left out
            .minreq = static_cast<std::uint32_t>(pa_usec_to_bytes(asked, &format)),
            .fragsize = open};
}

}  // namespace

// Speech in the server's stream. Everything in it is done with the loop locked.
class PulseDevice : public AudioDevice {
public:
    explicit PulseDevice(std::shared_ptr<PulseServer> server) : server_(std::move(server)) {
        server_->user_ = this;
    }

    ~PulseDevice() override {
        const Lock lock(loop());
        update_.reset();
        if (hasStream()) {
            forget(pa_stream_cork(stream(), 1, nullptr, nullptr));
            forget(pa_stream_flush(stream(), nullptr, nullptr));
        }
        if (server_->user_ == this) server_->user_ = nullptr;
    }

    PulseDevice(const PulseDevice&) = delete;
    PulseDevice& operator=(const PulseDevice&) = delete;

    std::optional<std::size_t> write(std::span<const std::int16_t> samples) override {
        const Lock lock(loop());
        if (!hasStream()) return std::nullopt;
        const std::size_t bytes = pa_stream_writable_size(stream());
        if (bytes == static_cast<std::size_t>(-1)) return std::nullopt;
        const std::size_t room = bytes / sizeof(std::int16_t);
        if (room == 0) return 0;
        if (samples.empty()) return sendSilence(room);
        const auto part = samples.first(std::min(samples.size(), room));
        speech_ += part.size();
        silence_ = 0;
        return send(part) ? std::optional(part.size()) : std::nullopt;
    }

    // The server's own figures: the time that its library makes of them is wrong where a sink begins late.
    Playback playback() override {
        const Lock lock(loop());
        if (!hasStream() || speech_ == 0) return {};
        if (!update_ || pa_operation_get_state(update_.get()) != PA_OPERATION_RUNNING)
            update_.reset(pa_stream_update_timing_info(stream(), &noteUpdate, this));
        const pa_timing_info* timing = pa_stream_get_timing_info(stream());
        if (!updated_ || timing == nullptr || timing->write_index_corrupt != 0) return {time(speech_), false};
        const auto buffered = std::max<std::int64_t>(0, timing->write_index - timing->read_index);
        auto left = time(static_cast<std::size_t>(buffered) / sizeof(std::int16_t)) +
                    microseconds(timing->sink_usec) - time(silence_);
        const bool moving = timing->playing != 0;
        if (moving) left -= std::chrono::duration_cast<microseconds>(Clock::now() - *updated_);
        return {std::max(left, microseconds::zero()), moving};
    }

    void drop() override {
        const Lock lock(loop());
        if (hasStream()) forget(pa_stream_flush(stream(), nullptr, nullptr));
        speech_ = silence_ = 0;
        update_.reset();
        updated_.reset();
    }

private:
    static void noteUpdate(pa_stream*, int success, void* device) {
        if (success != 0) static_cast<PulseDevice*>(device)->updated_ = Clock::now();
    }

    pa_threaded_mainloop* loop() const { return server_->loop_.get(); }
    pa_stream* stream() const { return server_->stream_.get(); }
    bool hasStream() const {
        return server_->user_ == this && pa_stream_get_state(stream()) == PA_STREAM_READY;
    }
    // Some servers play the last of what they have only if there is more.
    std::optional<std::size_t> sendSilence(std::size_t room) {
        if (speech_ == 0) return 0;
        silence_ += room;
        return send(std::vector<std::int16_t>(room)) ? std::optional<std::size_t>(0) : std::nullopt;
    }
    bool send(std::span<const std::int16_t> samples) {
        if (pa_stream_write(stream(), samples.data(), samples.size_bytes(), nullptr, 0, PA_SEEK_RELATIVE) < 0)
            return false;
        if (pa_stream_is_corked(stream()) == 1) forget(pa_stream_cork(stream(), 0, nullptr, nullptr));
        return true;
    }
    microseconds time(std::size_t samples) const {
        return microseconds(samples * 1'000'000 / pa_stream_get_sample_spec(stream())->rate);
    }

    std::shared_ptr<PulseServer> server_;
    std::unique_ptr<pa_operation, Cancel> update_;
    std::size_t speech_ = 0;                    ///< samples written
    std::size_t silence_ = 0;                   ///< behind them
    std::optional<Clock::time_point> updated_;  ///< when the server last told of this line
};

void PulseServer::Free::operator()(pa_threaded_mainloop* loop) const {
    pa_threaded_mainloop_free(loop);
}

void PulseServer::Free::operator()(pa_context* context) const {
    pa_context_disconnect(context);
    pa_context_unref(context);
}

void PulseServer::Free::operator()(pa_stream* stream) const {
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

PulseServer::PulseServer(std::string address)
    : address_(std::move(address)), loop_(pa_threaded_mainloop_new()) {}

PulseServer::~PulseServer() {
    if (!loop_) return;
    {
        const Lock lock(loop_.get());
        stream_.reset();
        context_.reset();
    }
    if (started_) pa_threaded_mainloop_stop(loop_.get());
}

bool PulseServer::connect() {
    constexpr int usualRate = 22050;
    if (!loop_) return false;
    const std::lock_guard preparing(preparing_);
    const Lock lock(loop_.get());
    if (!connectContext()) return false;
    return prepareStream(stream_ ? static_cast<int>(pa_stream_get_sample_spec(stream_.get())->rate)
                                 : usualRate);
}

std::unique_ptr<AudioDevice> PulseServer::open(int sampleRate) {
    if (!loop_) return nullptr;
    const std::lock_guard preparing(preparing_);
    const Lock lock(loop_.get());
    if (!connectContext() || !prepareStream(sampleRate)) return nullptr;
    if (user_ != nullptr) forget(pa_stream_flush(stream_.get(), nullptr, nullptr));
    return std::make_unique<PulseDevice>(shared_from_this());
}

bool PulseServer::connectContext() {
    pa_threaded_mainloop* const loop = loop_.get();
    if (!started_) started_ = pa_threaded_mainloop_start(loop) == 0;
    if (!started_) return false;
    if (context_ && !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_.get()))) {
        user_ = nullptr;
        stream_.reset();
        context_.reset();
    }
    if (!context_) {
        context_.reset(pa_context_new(pa_threaded_mainloop_get_api(loop), "Velmora"));
        if (!context_) return false;
        pa_context_set_state_callback(context_.get(), &wakeWaiting, loop);
        const char* const address = address_.empty() ? nullptr : address_.c_str();
        if (pa_context_connect(context_.get(), address, PA_CONTEXT_NOFLAGS, nullptr) < 0) return false;
    }
    const auto state = [this] { return pa_context_get_state(context_.get()); };
    while (PA_CONTEXT_IS_GOOD(state()) && state() != PA_CONTEXT_READY) pa_threaded_mainloop_wait(loop);
    return state() == PA_CONTEXT_READY;
}

bool PulseServer::prepareStream(int sampleRate) {
    const auto state = [this] { return pa_stream_get_state(stream_.get()); };
    const pa_sample_spec format{
        .format = PA_SAMPLE_S16NE, .rate = static_cast<std::uint32_t>(sampleRate), .channels = 1};
    // The one before stays until there is another, for the sink not to go back to its own pace.
    std::unique_ptr<pa_stream, Free> before;
    if (!stream_ || !PA_STREAM_IS_GOOD(state()) ||
        pa_stream_get_sample_spec(stream_.get())->rate != format.rate) {
        before = std::exchange(stream_, std::unique_ptr<pa_stream, Free>(
                                            pa_stream_new(context_.get(), "Speech", &format, nullptr)));
        user_ = nullptr;
        if (!stream_) return false;
        pa_stream_set_state_callback(stream_.get(), &wakeWaiting, loop_.get());
        const pa_buffer_attr buffer = buffering(format);
        if (pa_stream_connect_playback(
                stream_.get(), nullptr, &buffer,
                static_cast<pa_stream_flags_t>(PA_STREAM_ADJUST_LATENCY | PA_STREAM_START_CORKED), nullptr,
                nullptr) < 0)
            return false;
    }
    while (state() == PA_STREAM_UNCONNECTED || state() == PA_STREAM_CREATING)
        pa_threaded_mainloop_wait(loop_.get());
    return state() == PA_STREAM_READY;
}

}  // namespace agent
