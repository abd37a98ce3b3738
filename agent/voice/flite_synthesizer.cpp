#include <dlfcn.h>

// Its header knows nothing of C++.
extern "C" {
#include <flite/cst_cg.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <string>
#include <utility>

#include "agent/voice/flite_stream.h"
#include "agent/voice/flite_words.h"
#include "agent/voice/phrases.h"
#include "agent/voice/resampler.h"
#include "agent/voice/synthesizer.h"

namespace agent {
namespace {

constexpr std::size_t firstLetters = 26;  // some 7 ms of work before its first sample
constexpr std::size_t laterLetters = 110;
constexpr std::array<std::string_view, 3> voices = {"slt", "rms", "awb"};

// A voice is as large as the rest of the program: its library is opened when it is first asked for.
cst_voice* loadVoice(std::string_view name) {
    if (std::ranges::find(voices, name) == voices.end()) return nullptr;
    // Registering changes lists of the library's own.
    static std::mutex& mutex = *new std::mutex;
    const std::lock_guard lock(mutex);
    const std::string full = "cmu_us_" + std::string(name);
    // Never closed: the library keeps what a voice has registered.
    void* library = dlopen(("libflite_" + full + ".so.1").c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (library == nullptr) return nullptr;
    using Register = cst_voice* (*)(const char*);
    const auto registerVoice = reinterpret_cast<Register>(dlsym(library, ("register_" + full).c_str()));
    if (registerVoice == nullptr) return nullptr;
    flite_init();
    return registerVoice(nullptr);
}

class FliteSynthesizer : public Synthesizer {
public:
    explicit FliteSynthesizer(cst_voice* voice)
        : voice_(voice), sampleRate_(get_param_int(voice->features, "sample_rate", 16000)) {}

    int sampleRate() const override { return sampleRate_; }
    PhraseLimits limits() const override { return {.first = firstLetters, .later = laterLetters}; }

    void speak(const Phrase& phrase, const VoiceParameters& parameters,
               const SpeechReceiver& receiver) override {
        if (parameters.whisper) return whisper(phrase, parameters, receiver);
        const UtteranceTree tree = begin(parameters);
        if (!addText(*tree, phrase.words)) {
            receiver.receive(estimatePace(phrase.words, phrase.first, parameters.rate, sampleRate_));
        } else if (phrase.words.size() == 1 && lettersToSay(phrase.words.front()) > firstLetters) {
            speakLongWord(phrase, readAs(*tree), parameters, receiver);
        } else {
            stream(*tree, {.phrase = phrase, .sampleRate = sampleRate_}, receiver);
        }
    }

private:
    UtteranceTree begin(const VoiceParameters& parameters) const {
        UtteranceTree tree(new_utterance());
        utt_init(tree.get(), voice_);
        apply(*tree, parameters);
        return tree;
    }

    // A number or an address may be read as many words: the first of them must not wait for the last.
    void speakLongWord(const Phrase& phrase, std::span<const std::string> read,
                       const VoiceParameters& parameters, const SpeechReceiver& receiver) const {
        constexpr std::size_t nameOfALetter = 3;
        std::size_t told = 0;
        std::size_t limit = firstLetters;
        for (std::size_t count = 0; !read.empty() && !receiver.stopped(); read = read.subspan(count)) {
            std::size_t letters = 0;
            for (count = 0; count < read.size() && (count == 0 || letters < limit); ++count)
                letters += std::max(read[count].size(), nameOfALetter) + 1;
            const UtteranceTree tree = begin(parameters);
            addRead(*tree, read.first(count), phrase.words.front().stressed);
            Phrase part = phrase;
            part.endsSentence = phrase.endsSentence && count == read.size();
            stream(*tree, {.phrase = part, .told = told, .sampleRate = sampleRate_}, receiver);
            told = 1;
            limit = laterLetters;
        }
    }

    // The library can't: the other engine does.
    void whisper(const Phrase& phrase, VoiceParameters parameters, const SpeechReceiver& receiver) {
        std::call_once(espeakAsked_, [this] { espeak_ = openEspeak(); });
        parameters.name = parameters.fallback = "en-us";
        Resampler resampler(espeak_->sampleRate(), sampleRate_);
        espeak_->speak(phrase, parameters,
                       {.receive =
                            [&](Utterance utterance) {
                                utterance.samples = resampler.resample(utterance.samples);
                                for (auto& event : utterance.events)
                                    event.sample = resampler.scaled(event.sample);
                                receiver.receive(std::move(utterance));
                            },
                        .stopped = receiver.stopped});
    }

    void apply(const cst_utterance& tree, const VoiceParameters& parameters) const {
        constexpr float ownRate = 163;  // words a minute, as espeak counts them
        constexpr float octave = 60;    // steps of the pitch
        constexpr float middle = 50;
        const auto rate = static_cast<float>(std::clamp(parameters.rate, 80, 450));
        feat_set_float(tree.features, "duration_stretch", ownRate / rate);
        if (feat_present(voice_->features, "cg_db") == 0) return;
        const cst_cg_db& data = *val_cg_db(feat_val(voice_->features, "cg_db"));
        const auto pitch = static_cast<float>(std::clamp(parameters.pitch, 0, 99));
        const auto range = static_cast<float>(std::clamp(parameters.range, 0, 99));
        const float mean = parameters.hertz ? static_cast<float>(*parameters.hertz)
                                            : data.f0_mean * std::exp2((pitch - middle) / octave);
        feat_set_float(tree.features, "int_f0_target_mean", mean);
        feat_set_float(tree.features, "int_f0_target_stddev",
                       data.f0_stddev * (mean / data.f0_mean) * (range / middle));
    }

    cst_voice* voice_;  // the library's
    std::once_flag espeakAsked_;
    std::unique_ptr<Synthesizer> espeak_;
    int sampleRate_;
};

}  // namespace

std::unique_ptr<Synthesizer> openFlite(std::string_view voice) {
    cst_voice* loaded = loadVoice(voice);
    return loaded != nullptr ? std::make_unique<FliteSynthesizer>(loaded) : nullptr;
}

std::vector<std::string> installedFliteVoices() {
    std::vector<std::string> installed;
    for (const std::string_view voice : voices) {
        const std::string library = "libflite_cmu_us_" + std::string(voice) + ".so.1";
        void* found = dlopen(library.c_str(), RTLD_LAZY | RTLD_LOCAL);
        if (found == nullptr) continue;
        dlclose(found);
        installed.push_back(std::string(clearerVoices) + std::string(voice));
    }
    return installed;
}

}  // namespace agent
