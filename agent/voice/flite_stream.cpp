#include "agent/voice/flite_stream.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "agent/voice/visemes.h"

namespace agent {
namespace {

constexpr double longestSeconds = 120;

// What a stream of samples needs on its way: the library makes it piece by piece.
struct Streaming {
    cst_utterance* tree;
    const Phrase* phrase;
    std::size_t word;  // the next one without an event
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
    std::size_t& word = stream.word;
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

}  // namespace

void stream(cst_utterance& tree, const StreamedPhrase& streamed, const SpeechReceiver& receiver) {
    Streaming streaming{
        .tree = &tree, .phrase = &streamed.phrase, .word = streamed.told, .receiver = &receiver};
    cst_audio_streaming_info* info = new_audio_streaming_info();
    info->min_buffsize = streamed.sampleRate / 50;
    info->asc = &passOn;
    info->utt = &tree;
    info->userdata = &streaming;
    feat_set(tree.features, "streaming_info", audio_streaming_info_val(info));  // owned by the tree
    utt_synth_tokens(&tree);
    Utterance rest{.samples = {}, .events = std::move(streaming.events.events)};
    for (auto& event : rest.events) event.sample = 0;
    if (!rest.events.empty() && !receiver.stopped()) receiver.receive(std::move(rest));
}

}  // namespace agent
