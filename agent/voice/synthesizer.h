#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "agent/mouth.h"
#include "agent/speech_text.h"

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
    std::string name = {};  ///< of one of the engine's voices ("en-us"), or "flite:" and a name ("flite:slt")
    std::string fallback = {};      ///< the voice to take where there is no `name`
    int rate = 160;                 ///< words a minute
    int pitch = 50;                 ///< 0 to 99, about the voice's own
    int range = 50;                 ///< liveliness of the melody, 0 to 99
    std::optional<int> hertz = {};  ///< the pitch, in place of `pitch`
    bool whisper = false;
};

/// The parameters as the tags before a word change them. Its volume and context are not the engine's.
VoiceParameters withDelivery(VoiceParameters own, const Delivery& delivery);

/// Words that are said in one go and alike.
struct Phrase {
    std::span<const SpokenWord> words;
    std::size_t first = 0;     ///< the index of the first of them in its line
    bool endsSentence = true;  ///< a rest follows; else the next phrase goes on at once
};

/// The most letters of a phrase, as `lettersToSay` counts them; but for a single word.
struct PhraseLimits {
    std::size_t first = SIZE_MAX;  ///< of a line: its first sample is waited for
    std::size_t later = SIZE_MAX;  ///< of one that is given up halfway
};

/// Whoever takes speech as it comes.
struct SpeechReceiver {
    std::function<void(Utterance)> receive;
    std::function<bool()> stopped;  ///< whether to give up
};

/// A speech engine with one of its voices. Several threads may use it, and several of them, at the same time.
class Synthesizer {
public:
    virtual ~Synthesizer() = default;

    /// Samples a second.
    virtual int sampleRate() const = 0;

    /// How long phrases are that keep nobody waiting.
    virtual PhraseLimits limits() const = 0;

    /// Speaks a phrase, in one utterance or in several that follow one another. Event indices count from the
    /// phrase's `first`. At most two minutes come of one phrase.
    virtual void speak(const Phrase& phrase, const VoiceParameters& parameters,
                       const SpeechReceiver& receiver) = 0;
};

/// What begins the name of a voice of the clearer engine.
inline constexpr std::string_view clearerVoices = "flite:";

/// The engine that has the voice of that name, or its fallback. Never null: where no engine works, it is
/// silent at the same pace.
std::unique_ptr<Synthesizer> openSynthesizer(const VoiceParameters& parameters);

/// The engine that has a voice for everything. Its library is one for the process: several wait for one
/// another. Loaded on the first use, which takes some milliseconds.
std::unique_ptr<Synthesizer> openEspeak();

/// How American English says a text, in the International Phonetic Alphabet. Of a long text only its
/// beginning; empty where the engine that has a voice for everything doesn't work.
std::string phonetic(std::string_view text);

/// A voice of the clearer engine, by its name without the engine's; null where it is not installed. Loaded on
/// the first use.
std::unique_ptr<Synthesizer> openFlite(std::string_view voice);

/// The voices of the clearer engine that are installed here, as `VoiceParameters::name` names them.
std::vector<std::string> installedFliteVoices();

/// Silence at the pace at which the words would be said.
Utterance estimatePace(std::span<const SpokenWord> words, std::size_t first, int wordsPerMinute,
                       int sampleRate);

/// Changes the loudness; `volume` as in `Delivery`.
void setVolume(Utterance& utterance, std::uint16_t volume);

}  // namespace agent
