#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string_view>

#include "agent/bytes.h"
#include "agent/voice/espeak_pitch.h"
#include "agent/voice/ssml.h"
#include "agent/voice/synthesizer.h"
#include "agent/voice/visemes.h"

// The library opens a sound device when it is initialised, though samples are all that is asked of it, and
// waits half a minute for a sound server that hangs. This function, found before that of its companion, gives
// it none.
extern "C" void* create_audio_device_object(const char*, const char*, const char*) {
    return nullptr;
}

namespace agent {
namespace {

constexpr std::size_t longestSeconds = 120;
constexpr std::size_t firstLetters = 110;  // some 7 ms of work

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
    std::vector<TimedViseme> sounds;
    const std::function<bool()>* stopped;
    std::size_t sampleRate;
};

void collect(Collector& collector, const espeak_EVENT& event) {
    const auto sample =
        static_cast<std::size_t>(std::max(0, event.audio_position)) * collector.sampleRate / 1000;
    if (event.type == espeakEVENT_MARK && event.id.name != nullptr) {
        const std::string_view name = event.id.name;
        std::size_t word = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), word);
        if (error != std::errc() || end != name.data() + name.size()) return;
        collector.utterance.events.push_back({sample, word});
    } else if (event.type == espeakEVENT_PHONEME) {
        const std::string_view name(event.id.string, strnlen(event.id.string, sizeof event.id.string));
        collector.sounds.push_back({sample, visemeOfEspeak(name)});
    }
}

int receive(short* samples, int count, espeak_EVENT* events) {
    auto* collector = static_cast<Collector*>(events->user_data);
    if (collector == nullptr) return 0;
    for (; events->type != espeakEVENT_LIST_TERMINATED; ++events) collect(*collector, *events);
    auto& all = collector->utterance.samples;
    if (samples != nullptr && count > 0) all.insert(all.end(), samples, samples + count);
    return (*collector->stopped)() || all.size() > collector->sampleRate * longestSeconds ? 1 : 0;
}

void apply(const VoiceParameters& parameters) {
    const std::string variant = parameters.whisper ? "+whisper" : "";
    if (espeak_SetVoiceByName((parameters.name + variant).c_str()) != EE_OK &&
        espeak_SetVoiceByName((parameters.fallback + variant).c_str()) != EE_OK) {
        espeak_SetVoiceByName(("en-us" + variant).c_str());
    }
    const int pitch = parameters.hertz ? espeakPitch(*parameters.hertz) : parameters.pitch;
    espeak_SetParameter(espeakRATE, std::clamp(parameters.rate, espeakRATE_MINIMUM, espeakRATE_MAXIMUM), 0);
    espeak_SetParameter(espeakPITCH, std::clamp(pitch, 0, 99), 0);
    espeak_SetParameter(espeakRANGE, std::clamp(parameters.range, 0, 99), 0);
}

// The rest that the library puts behind whatever it says.
void cutRest(Utterance& utterance, std::size_t sampleRate) {
    constexpr int faint = 60;
    auto& samples = utterance.samples;
    const auto loud =
        std::find_if(samples.rbegin(), samples.rend(), [](int sample) { return std::abs(sample) > faint; });
    const auto end = static_cast<std::size_t>(samples.rend() - loud) + sampleRate / 50;
    if (end < samples.size()) samples.resize(end);
}

class EspeakSynthesizer : public Synthesizer {
public:
    EspeakSynthesizer() {
        const std::lock_guard lock(libraryMutex());
        const int rate = initialize();
        works_ = rate > 0;
        if (works_) sampleRate_ = rate;
    }

    int sampleRate() const override { return sampleRate_; }
    PhraseLimits limits() const override { return {.first = firstLetters}; }

    void speak(const Phrase& phrase, const VoiceParameters& parameters,
               const SpeechReceiver& receiver) override {
        Utterance utterance = works_ ? synthesize(phrase, parameters, receiver) : Utterance();
        if (utterance.samples.empty())
            utterance = estimatePace(phrase.words, phrase.first, parameters.rate, sampleRate_);
        if (!phrase.endsSentence) cutRest(utterance, static_cast<std::size_t>(sampleRate_));
        receiver.receive(std::move(utterance));
    }

private:
    Utterance synthesize(const Phrase& phrase, const VoiceParameters& parameters,
                         const SpeechReceiver& receiver) const {
        const std::string document = toSsml(phrase.words, phrase.first);
        Collector collector{.utterance = {},
                            .sounds = {},
                            .stopped = &receiver.stopped,
                            .sampleRate = static_cast<std::size_t>(sampleRate_)};
        {
            const std::lock_guard lock(libraryMutex());
            apply(parameters);
            espeak_SetSynthCallback(&receive);
            espeak_Synth(document.c_str(), document.size() + 1, 0, POS_CHARACTER, 0,
                         espeakCHARS_UTF8 | espeakSSML, nullptr, &collector);
        }
        addMouths(collector.utterance, collector.sounds, collector.utterance.samples.size());
        return std::move(collector.utterance);
    }

    bool works_ = false;
    int sampleRate_ = 22050;
};

}  // namespace

std::unique_ptr<Synthesizer> openEspeak() {
    return std::make_unique<EspeakSynthesizer>();
}

std::string phonetic(std::string_view text) {
    constexpr std::size_t longest = 100;
    constexpr int inIpa = 2;
    const std::string beginning = toUtf8(text.substr(0, longest));
    std::string ipa;
    const std::lock_guard lock(libraryMutex());
    if (initialize() <= 0 || espeak_SetVoiceByName("en-us") != EE_OK) return ipa;
    // Each call reads one clause, and moves on to the next one.
    for (const void* rest = beginning.c_str(); rest != nullptr;) {
        const char* clause = espeak_TextToPhonemes(&rest, espeakCHARS_UTF8, inIpa);
        if (clause != nullptr) ipa.append(clause).append(" ");
    }
    return ipa;
}

}  // namespace agent
