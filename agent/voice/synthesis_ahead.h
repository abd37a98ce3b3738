#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "agent/speech_text.h"
#include "agent/voice/synthesizer.h"

namespace agent {

/// Synthesises a line in a thread of its own, ahead of whoever takes the pieces: a phrase is begun when
/// hardly anything is left to take, and however long it is, only some seconds of it are in memory as speech.
class SynthesisAhead {
public:
    /// `synthesizer` outlives this. `wake` is called in the thread whenever there is something new.
    SynthesisAhead(Synthesizer& synthesizer, std::shared_ptr<const SpokenLine> line,
                   VoiceParameters parameters, std::function<void()> wake);

    /// Gives up what is not yet taken, and waits until the engine lets go of it.
    ~SynthesisAhead();

    SynthesisAhead(const SynthesisAhead&) = delete;
    SynthesisAhead& operator=(const SynthesisAhead&) = delete;

    /// The next piece, if there is one by now.
    std::optional<Utterance> take();

    /// Whether everything has been taken.
    bool finished();

    /// Lets go of the line and of what is not yet taken, as soon as the engine does: some need tens of
    /// milliseconds to come round.
    void giveUp();

    /// Whether destroying this waits for nothing.
    bool ended();

private:
    void run();
    void speak(std::span<const SpokenWord> words, std::size_t first, const SpeechReceiver& receiver);
    void pause(std::chrono::milliseconds time);
    bool awaitLack();
    void put(Utterance utterance);
    bool stopped();

    Synthesizer& synthesizer_;
    std::shared_ptr<const SpokenLine> line_;  ///< the thread's, until it ends
    const VoiceParameters parameters_;
    const std::function<void()> wake_;

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Utterance> ready_;
    std::size_t samples_ = 0;  ///< in `ready_`
    bool stopped_ = false;
    bool ended_ = false;
    std::thread thread_;
};

}  // namespace agent
