#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "agent/voice/audio_sink.h"
#include "agent/voice/synthesizer.h"
#include "agent/voice/voice.h"

namespace agent {

class SynthesisAhead;

/// A line to be said.
struct SpeechJob {
    std::shared_ptr<const SpokenLine> line;  ///< not null
    VoiceEvents events;
};

/// What the thread that speaks and the caller's thread share. The caller's side never waits for a device.
class SpeechWorker : public std::enable_shared_from_this<SpeechWorker> {
public:
    /// Each line opens its sink with `open`, in the thread.
    SpeechWorker(VoiceParameters parameters, OpenSink open, Post post);

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

    bool isAwaited();
    std::optional<SpeechJob> nextJob(Turn& turn);
    void say(SynthesisAhead& speech, int sampleRate, const SpeechJob& job, Turn turn);
    void tell(const SpeechJob& job, const SpeechEvent& event, Turn turn);
    bool stopped(Turn turn);
    void nudge();
    void waitUntil(std::chrono::steady_clock::time_point time, Turn turn);
    void deliver(Turn turn, std::function<void()> event);

    const VoiceParameters parameters_;
    const OpenSink open_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<SpeechJob> waiting_;
    Turn turn_ = 0;  ///< counts lines and stops: what belongs to an earlier turn is void
    bool nudged_ = false;
    bool quitting_ = false;
    bool ended_ = false;
    Post post_;
};

/// A voice with everything decided, in a thread of its own; see `makeVoice` of the settings.
std::unique_ptr<Voice> makeVoice(VoiceParameters parameters, OpenSink open, Post post);

}  // namespace agent
