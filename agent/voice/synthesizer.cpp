#include "agent/voice/synthesizer.h"

#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <mutex>
#include <string_view>

#include "agent/bytes.h"
#include "agent/voice/ssml.h"

namespace agent {
namespace {

constexpr int longestSeconds = 120;

// The library is one per process, and so is this lock.
std::mutex& libraryMutex() {
    static auto& mutex =
        *new std::mutex;  // never destroyed: a voice that is still busy at the end may hold it
    return mutex;
}

int initialize() {
    static const int rate = espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr,
                                              espeakINITIALIZE_PHONEME_EVENTS | espeakINITIALIZE_DONT_EXIT);
    return rate;
}

struct Collector {
    Utterance utterance;
    const std::function<bool()>* stopped;
    std::size_t mostSamples;
    int sampleRate;
};

// The mouth of a sound, by the first letter of its phoneme's name.
Mouth mouthOf(std::string_view phoneme) {
    struct Shape {
        std::string_view letters;
        Mouth mouth;
    };
    constexpr std::array<Shape, 6> shapes = {{{"aA03V", Mouth::A},
                                              {"eEiI", Mouth::E},
                                              {"oO", Mouth::O},
                                              {"uUwW", Mouth::U},
                                              {"fv", Mouth::F},
                                              {"lLtTdDnNszSZ", Mouth::L}}};
    for (const char c : phoneme) {
        if (c == '\'' || c == ',' || c == '%') continue;  // stress
        const auto found = std::ranges::find_if(
            shapes, [c](const Shape& shape) { return shape.letters.find(c) != std::string_view::npos; });
        return found == shapes.end() ? Mouth::closed : found->mouth;
    }
    return Mouth::closed;
}

void collect(Collector& collector, const espeak_EVENT& event) {
    const auto sample = static_cast<std::size_t>(std::max(0, event.audio_position)) *
                        static_cast<std::size_t>(collector.sampleRate) / 1000;
    auto& events = collector.utterance.events;
    if (event.type == espeakEVENT_MARK && event.id.name != nullptr) {
        const std::string_view name = event.id.name;
        std::size_t word = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), word);
        if (error == std::errc() && end == name.data() + name.size()) events.push_back({sample, word});
    } else if (event.type == espeakEVENT_PHONEME) {
        const std::string_view name(event.id.string, strnlen(event.id.string, sizeof event.id.string));
        events.push_back({sample, mouthOf(name)});
    }
}

int receive(short* samples, int count, espeak_EVENT* events) {
    auto* collector = static_cast<Collector*>(events->user_data);
    if (collector == nullptr) return 0;
    for (; events->type != espeakEVENT_LIST_TERMINATED; ++events) collect(*collector, *events);
    auto& all = collector->utterance.samples;
    if (samples != nullptr && count > 0) all.insert(all.end(), samples, samples + count);
    return (*collector->stopped)() || all.size() > collector->mostSamples ? 1 : 0;
}

void apply(const VoiceParameters& parameters) {
    if (espeak_SetVoiceByName(parameters.name.c_str()) != EE_OK &&
        espeak_SetVoiceByName(parameters.fallback.c_str()) != EE_OK) {
        espeak_SetVoiceByName("en");
    }
    espeak_SetParameter(espeakRATE, std::clamp(parameters.rate, espeakRATE_MINIMUM, espeakRATE_MAXIMUM), 0);
    espeak_SetParameter(espeakPITCH, std::clamp(parameters.pitch, 0, 99), 0);
    espeak_SetParameter(espeakRANGE, std::clamp(parameters.range, 0, 99), 0);
}

}  // namespace

Synthesizer::Synthesizer() {
    const std::lock_guard lock(libraryMutex());
    const int rate = initialize();
    works_ = rate > 0;
    if (works_) sampleRate_ = rate;
}

Utterance Synthesizer::synthesize(const std::vector<SpokenWord>& words, std::size_t first,
                                  const VoiceParameters& parameters,
                                  const std::function<bool()>& stopped) const {
    if (!works_) return estimatePace(words, first, parameters.rate, sampleRate_);
    const std::string document = toSsml(words, first);
    Collector collector{.utterance = {},
                        .stopped = &stopped,
                        .mostSamples = static_cast<std::size_t>(sampleRate_) * longestSeconds,
                        .sampleRate = sampleRate_};
    const std::lock_guard lock(libraryMutex());
    apply(parameters);
    espeak_SetSynthCallback(&receive);
    const auto result = espeak_Synth(document.c_str(), document.size() + 1, 0, POS_CHARACTER, 0,
                                     espeakCHARS_UTF8 | espeakSSML, nullptr, &collector);
    if (result != EE_OK && collector.utterance.samples.empty()) {
        return estimatePace(words, first, parameters.rate, sampleRate_);
    }
    std::ranges::stable_sort(collector.utterance.events, {}, &SpeechEvent::sample);
    return std::move(collector.utterance);
}

std::string Synthesizer::phonetic(std::string_view text) const {
    constexpr std::size_t longest = 100;
    constexpr int inIpa = 2;
    std::string ipa;
    if (!works_) return ipa;
    const std::string beginning = toUtf8(text.substr(0, longest));
    const std::lock_guard lock(libraryMutex());
    if (espeak_SetVoiceByName("en-us") != EE_OK) return ipa;
    // Each call reads one clause, and moves on to the next one.
    for (const void* rest = beginning.c_str(); rest != nullptr;) {
        const char* clause = espeak_TextToPhonemes(&rest, espeakCHARS_UTF8, inIpa);
        if (clause != nullptr) ipa.append(clause).append(" ");
    }
    return ipa;
}

Utterance estimatePace(const std::vector<SpokenWord>& words, std::size_t first, int wordsPerMinute,
                       int sampleRate) {
    constexpr std::size_t averageLetters = 6;
    const auto rate = static_cast<std::size_t>(std::clamp(wordsPerMinute, 80, 450));
    const std::size_t perLetter = static_cast<std::size_t>(sampleRate) * 60 / rate / averageLetters;
    std::size_t end = 0;
    Utterance silence;
    for (const auto& word : words) {
        silence.events.push_back({end, first++});
        silence.events.push_back({end, Mouth::A});
        end += perLetter * std::clamp<std::size_t>(word.spoken.size() + 1, 2, 40);
        silence.events.push_back({end - perLetter, Mouth::closed});
    }
    silence.samples.resize(end);
    return silence;
}

}  // namespace agent
