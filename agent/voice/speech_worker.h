#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "agent/voice/audio_sink.h"
#include "agent/voice/synthesizer.h"
#include "agent/voice/voice.h"

namespace agent {

/// A line to be said.
struct SpeechJob {
    SpokenLine line;
    VoiceEvents events;
};

/// What the thread that speaks and the caller's thread share. The caller's side never waits for a device.
class SpeechWorker : public std::enable_shared_from_this<SpeechWorker> {
public:
    SpeechWorker(VoiceParameters parameters, std::string device, Post post);

    // The caller's side.

    /// Begins a line in place of the one under way.
    void speak(SpeechJob job);

    /// Ends the line under way.
    void stop();

    /// Ends the thread, and every call of `post`. False: it hangs in a device, and must be left to itself.
    bool quit(std::chrono::milliseconds patience);

    // The thread's side.

    /// Speaks line after line until told to quit.
    void run();

private:
    using Turn = std::uint64_t;

    std::optional<SpeechJob> nextJob(Turn& turn);
    std::unique_ptr<AudioSink> openSink(int rate, Turn turn);
    void say(const Synthesizer& synthesizer, const SpeechJob& job, Turn turn);
    bool stopped(Turn turn);
    void waitUntil(std::chrono::steady_clock::time_point time, Turn turn);
    void deliver(Turn turn, std::function<void()> event);

    const VoiceParameters parameters_;
    const std::string device_;
    bool fileBegun_ = false;  ///< the thread's

    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<SpeechJob> waiting_;
    Turn turn_ = 0;  ///< counts lines and stops: what belongs to an earlier turn is void
    bool quitting_ = false;
    bool ended_ = false;
    Post post_;
};

}  // namespace agent
