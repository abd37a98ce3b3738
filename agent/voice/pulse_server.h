#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "agent/voice/audio_device.h"

struct pa_context;
struct pa_stream;
struct pa_threaded_mainloop;

namespace agent {

/// A sound server, with one stream that rests between lines. So a line begins at once, and a sink that would
/// render two seconds of silence ahead, where nobody wants it quick, does not. May be used by several
/// threads; each call waits for the server, half a minute or more if that hangs.
class PulseServer : public std::enable_shared_from_this<PulseServer> {
public:
    /// The one at that address ("unix:PATH"); empty: the user's own.
    explicit PulseServer(std::string address = {});
    ~PulseServer();

    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    /// Connects, unless it is connected, and makes the stream. False: there is no server.
    bool connect();

    /// The stream, for a line. Whoever had it loses it. Null: there is no server.
    std::unique_ptr<AudioDevice> open(int sampleRate);

private:
    friend class PulseDevice;

    struct Free {
        void operator()(pa_threaded_mainloop* loop) const;
        void operator()(pa_context* context) const;
        void operator()(pa_stream* stream) const;
    };

    // By one thread at a time, with the loop locked.
    bool connectContext();
    bool prepareStream(int sampleRate);

    const std::string address_;
    std::mutex preparing_;
    const std::unique_ptr<pa_threaded_mainloop, Free> loop_;  ///< null: the process can have no more files
    std::unique_ptr<pa_context, Free> context_;
    std::unique_ptr<pa_stream, Free> stream_;
    const AudioDevice* user_ = nullptr;  ///< has the stream
    bool started_ = false;
};

}  // namespace agent
