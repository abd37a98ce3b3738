#include <dlfcn.h>

// Its headers know nothing of C++.
extern "C" {
#include <flite/cst_cg.h>
#include <flite/flite.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <mutex>
#include <string>

#include "agent/voice/plain_text.h"
#include "agent/voice/synthesizer.h"
#include "agent/voice/visemes.h"

namespace agent {
namespace {

constexpr double longestSeconds = 120;
constexpr const char* wordIndex = "line_word";
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

struct DeleteUtterance {
    void operator()(cst_utterance* utterance) const { delete_utterance(utterance); }
};
using UtteranceTree = std::unique_ptr<cst_utterance, DeleteUtterance>;

struct CloseTokens {
    void operator()(cst_tokenstream* stream) const { ts_close(stream); }
};
using Tokens = std::unique_ptr<cst_tokenstream, CloseTokens>;

const char* textFeature(const cst_utterance& tree, const char* name) {
    return get_param_string(tree.features, name, nullptr);
}

void addTokens(cst_utterance& tree, cst_relation& relation, const SpokenWord& word, int index) {
    constexpr float emphasised = 1.25F;
    const std::string text = toPlainText(word.spoken);
    const Tokens stream(ts_open_string(
        text.c_str(), textFeature(tree, "text_whitespace"), textFeature(tree, "text_singlecharsymbols"),
        textFeature(tree, "text_prepunctuation"), textFeature(tree, "text_postpunctuation")));
    while (stream && ts_eof(stream.get()) == 0) {
        const char* name = ts_get(stream.get());
        if (*name == '\0') continue;
        cst_item* token = relation_append(&relation, nullptr);
        item_set_string(token, "name", name);
        item_set_string(token, "whitespace", stream->whitespace);
        item_set_string(token, "prepunctuation", stream->prepunctuation);
        item_set_string(token, "punc", stream->postpunctuation);
        item_set_int(token, wordIndex, index);
        if (word.stressed) item_set_float(token, "local_duration_stretch", emphasised);
    }
}

// The index within the phrase of the word that a sound belongs to, or -1.
int wordOf(const cst_item* segment) {
    const cst_item* syllable = item_parent(item_as(segment, "SylStructure"));
    const cst_item* word = syllable != nullptr ? item_parent(syllable) : nullptr;
    const cst_item* token = word != nullptr ? item_parent(item_as(word, "Token")) : nullptr;
    return token != nullptr ? item_feat_int(token, wordIndex) : -1;
}

// What a stream of samples needs on its way: the library makes it piece by piece.
struct Streaming {
    cst_utterance* tree;
    const Phrase* phrase;
    const SpeechReceiver* receiver;
    Utterance events = {};  // those not yet passed on; no samples
    std::size_t begin = 0;  // of what is passed on, the silence before the first sound cut
    std::size_t end = 0;
    bool planned = false;
};

std::size_t sampleAt(double seconds, int rate) {
    return static_cast<std::size_t>(std::max(0.0, std::min(seconds, longestSeconds)) * rate);
}

// By the time at which samples come, all sounds have their time.
void plan(Streaming& stream, int rate) {
    constexpr double rest = 0.02;
    stream.planned = true;
    std::vector<TimedViseme> sounds;
    std::size_t word = 0;
    double start = 0;
    double lastSound = 0;
    std::optional<double> firstSound;
    auto& events = stream.events.events;
    for (const cst_item* segment = relation_head(utt_relation(stream.tree, "Segment")); segment != nullptr;
         segment = item_next(segment)) {
        const double end = item_feat_float(segment, "end");
        const int index = wordOf(segment);
        if (index >= 0) {
            if (!firstSound) firstSound = start;
            lastSound = end;
            // Words without a sound of their own go with the one behind them.
            for (; word <= static_cast<std::size_t>(index); ++word)
                events.push_back({sampleAt(start, rate), stream.phrase->first + word});
        }
        sounds.push_back({sampleAt(start, rate), visemeOfFlite(item_name(segment))});
        start = end;
    }
    for (; word < stream.phrase->words.size(); ++word)
        events.push_back({sampleAt(lastSound, rate), stream.phrase->first + word});
    stream.begin = sampleAt(firstSound.value_or(0) - rest, rate);
    stream.end = sampleAt(stream.phrase->endsSentence ? start : lastSound + rest, rate);
    addMouths(stream.events, sounds, stream.end);
}

int passOn(const cst_wave* wave, int start, int size, int, cst_audio_streaming_info* info) {
    auto& stream = *static_cast<Streaming*>(info->userdata);
    if (stream.receiver->stopped()) return CST_AUDIO_STREAM_STOP;
    if (!stream.planned) plan(stream, wave->sample_rate);
    const auto from = std::clamp(static_cast<std::size_t>(start), stream.begin, stream.end);
    const auto to = std::clamp(static_cast<std::size_t>(start + size), stream.begin, stream.end);
    Utterance piece;
    piece.samples.assign(wave->samples + from, wave->samples + to);
    auto& events = stream.events.events;
    const auto later = std::ranges::find_if(events, [to](const auto& event) { return event.sample >= to; });
    for (auto event = events.begin(); event != later; ++event) {
        piece.events.push_back({std::max(event->sample, from) - from, event->what});
    }
    events.erase(events.begin(), later);
    if (!piece.samples.empty() || !piece.events.empty()) stream.receiver->receive(std::move(piece));
    return CST_AUDIO_STREAM_CONT;
}

// At another number of samples a second.
Utterance resampled(const Utterance& utterance, int from, int to) {
    const auto scaled = [from, to](std::size_t count) {
        return count * static_cast<std::size_t>(to) / static_cast<std::size_t>(from);
    };
    Utterance result;
    const auto& samples = utterance.samples;
    for (std::size_t i = 0; i < scaled(samples.size()); ++i) {
        const double at = static_cast<double>(i) * from / to;
        const auto left = static_cast<std::size_t>(at);
        const double part = at - static_cast<double>(left);
        const double right = samples[std::min(left + 1, samples.size() - 1)];
        result.samples.push_back(static_cast<std::int16_t>(samples[left] * (1 - part) + right * part));
    }
    for (const auto& event : utterance.events) result.events.push_back({scaled(event.sample), event.what});
    return result;
}

class FliteSynthesizer : public Synthesizer {
public:
    explicit FliteSynthesizer(cst_voice* voice)
        : voice_(voice), sampleRate_(get_param_int(voice->features, "sample_rate", 16000)) {}

    int sampleRate() const override { return sampleRate_; }
    PhraseLimits limits() const override { return {.first = 5, .later = 20}; }

    void speak(const Phrase& phrase, const VoiceParameters& parameters,
               const SpeechReceiver& receiver) override {
        if (parameters.whisper) return whisper(phrase, parameters, receiver);
        const UtteranceTree tree(new_utterance());
        utt_init(tree.get(), voice_);
        apply(*tree, parameters);
        cst_relation* tokens = utt_relation_create(tree.get(), "Token");
        for (std::size_t i = 0; i < phrase.words.size(); ++i)
            addTokens(*tree, *tokens, phrase.words[i], static_cast<int>(i));
        if (relation_head(tokens) == nullptr) {
            receiver.receive(estimatePace(phrase.words, phrase.first, parameters.rate, sampleRate_));
            return;
        }
        Streaming stream{.tree = tree.get(), .phrase = &phrase, .receiver = &receiver};
        cst_audio_streaming_info* info = new_audio_streaming_info();
        info->min_buffsize = sampleRate_ / 50;
        info->asc = &passOn;
        info->utt = tree.get();
        info->userdata = &stream;
        feat_set(tree->features, "streaming_info", audio_streaming_info_val(info));  // owned by the tree
        utt_synth_tokens(tree.get());
        Utterance rest{.samples = {}, .events = std::move(stream.events.events)};
        for (auto& event : rest.events) event.sample = 0;
        if (!rest.events.empty() && !receiver.stopped()) receiver.receive(std::move(rest));
    }

private:
    // The library can't: the other engine does.
    void whisper(const Phrase& phrase, VoiceParameters parameters, const SpeechReceiver& receiver) {
        if (!espeak_) espeak_ = openEspeak();
        parameters.name = parameters.fallback = "en-us";
        espeak_->speak(phrase, parameters,
                       {.receive =
                            [&](const Utterance& utterance) {
                                receiver.receive(resampled(utterance, espeak_->sampleRate(), sampleRate_));
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
