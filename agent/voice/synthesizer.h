#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "agent/speech_text.h"
#include "agent/voice/voice.h"

namespace agent {

/// Something that happens at a sample of an utterance: a word begins (its index), or the mouth moves.
struct SpeechEvent {
    std::size_t sample = 0;
    std::variant<std::size_t, Mouth> what;
};

/// A piece of speech: one channel of samples, and its events in order of time.
struct Utterance {
    std::vector<std::int16_t> samples;
    std::vector<SpeechEvent> events;
};

/// Settings with nothing left open.
struct VoiceParameters {
    std::string name;
    std::string fallback;  ///< the voice to take where there is no `name`
    int rate = 160;
    int pitch = 50;
    int range = 50;
};

/// The speech synthesiser of the system. Its state belongs to the whole process: calls of several threads
/// wait for one another.
class Synthesizer {
public:
    /// Loads it on the first use in the process, which takes some milliseconds.
    Synthesizer();

    /// Samples a second.
    int sampleRate() const { return sampleRate_; }

    /// Speaks words into memory; event indices count from `first`. Gives up as soon as `stopped` says so,
    /// and after two minutes of speech. Where the synthesiser doesn't work: silence at the same pace.
    Utterance synthesize(const std::vector<SpokenWord>& words, std::size_t first,
                         const VoiceParameters& parameters, const std::function<bool()>& stopped) const;

    /// How American English says a text, in the International Phonetic Alphabet. Of a long text only its
    /// beginning; empty where the synthesiser doesn't work.
    std::string phonetic(std::string_view text) const;

private:
    bool works_ = false;
    int sampleRate_ = 22050;
};

/// Silence at the pace at which the words would be said.
Utterance estimatePace(const std::vector<SpokenWord>& words, std::size_t first, int wordsPerMinute,
                       int sampleRate);

}  // namespace agent
