#include "agent/hearing/recogniser.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <future>
#include <random>

#include "agent/hearing/shown_words.h"
#include "agent/hearing/wav_reader.h"

namespace agent {
namespace {

/// The phrase as the model likes it: of a usual loudness, and nowhere stiller than a recording room, as the
/// model knows no perfect silence.
Samples prepare(std::span<const std::int16_t> samples) {
    constexpr int usualPeak = 12000;
    constexpr double mostGain = 50;
    constexpr int floor = 50;
    int peak = 1;
    for (const std::int16_t sample : samples) peak = std::max(peak, std::abs(int{sample}));
    const double gain = std::min(static_cast<double>(usualPeak) / peak, mostGain);
    Samples prepared(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i)
        prepared[i] = static_cast<std::int16_t>(std::lround(samples[i] * gain));
    std::minstd_rand noise;  // seeded the same each time: a phrase is always heard the same way
    for (std::int16_t& sample : prepared)
        sample = static_cast<std::int16_t>(sample + static_cast<int>(noise() % (2 * floor + 1)) - floor);
    return prepared;
}

/// The same played more slowly, and thus lower, by linear interpolation.
Samples stretched(std::span<const std::int16_t> samples, double factor) {
    Samples result(static_cast<std::size_t>(static_cast<double>(samples.size()) * factor));
    for (std::size_t i = 0; i < result.size(); ++i) {
        const double at = static_cast<double>(i) / factor;
        const auto left = std::min(static_cast<std::size_t>(at), samples.size() - 1);
        const auto right = std::min(left + 1, samples.size() - 1);
        result[i] = static_cast<std::int16_t>(std::lround(std::lerp(
            static_cast<double>(samples[left]), static_cast<double>(samples[right]), at - std::floor(at))));
    }
    return result;
}

/// Whether there is nothing but the noise of the samples' own steps.
bool isSilence(std::span<const std::int16_t> samples) {
    constexpr int steps = 20;
    return std::ranges::all_of(samples, [](int sample) { return std::abs(sample) < steps; });
}

}  // namespace

std::unique_ptr<Recogniser> Recogniser::load(const HearingModel& model,
                                             const std::vector<std::string>& grammars,
                                             const SoundOut& soundOut) {
    const auto dictionary = Dictionary::read(model.dictionary);
    if (!dictionary) return nullptr;
    std::vector<CommandGraph> graphs;
    graphs.reserve(grammars.size());
    for (const std::string& grammar : grammars)
        graphs.push_back(makeCommandGraph(grammar, *dictionary, soundOut));
    if (std::ranges::all_of(graphs, &CommandGraph::empty)) return nullptr;
    auto decoder = Decoder::load(model, graphs);
    if (!decoder) return nullptr;
    addWritings(graphs, *dictionary);
    auto transcriber = Transcriber::load(model.writing, graphs);
    return std::unique_ptr<Recogniser>(
        new Recogniser(grammars, std::move(graphs), std::move(decoder), std::move(transcriber)));
}

Recogniser::Recogniser(const std::vector<std::string>& grammars, std::vector<CommandGraph> graphs,
                       std::unique_ptr<Decoder> decoder, std::unique_ptr<Transcriber> transcriber)
    : vocabulary_(std::vector<std::string_view>(grammars.begin(), grammars.end())),
      graphs_(std::move(graphs)),
      decoder_(std::move(decoder)),
      transcriber_(std::move(transcriber)) {}

void Recogniser::addCommand(Transcript& transcript, const Reading& reading) {
    const auto command = commandOf(reading);
    if (!command || std::ranges::find(transcript.commands, *command, &Transcript::Command::command) !=
                        transcript.commands.end())
        return;
    if (auto written = transcriber_->asCommand(*command)) transcript.commands.push_back(std::move(*written));
}

Readings Recogniser::read(std::span<const std::int16_t> samples, const std::stop_token& stop) {
    const Samples prepared = prepare(samples);
    // An answer is waited for.
    auto sounds = std::async(std::launch::async, [&] { return decoder_->asSounds(prepared); });
    auto transcript = std::async(std::launch::async, [&]() -> std::optional<Transcript> {
        if (!transcriber_) return {};
        return transcriber_->transcribe(samples, stop);
    });
    Readings readings{.command = decoder_->asCommand(prepared), .sounds = sounds.get()};
    try {
        readings.transcript = transcript.get();
        if (readings.transcript && !stop.stop_requested()) addCommand(*readings.transcript, readings.command);
    } catch (const std::exception&) {
        readings.transcript.reset();  // the model has failed: one hears less well without it
    }
    return readings;
}

void Recogniser::readSlower(std::span<const std::int16_t> samples, Readings& readings,
                            const std::stop_token& stop) {
    constexpr double howMuch = 1.1;
    if (!readings.transcript) return;
    try {
        readings.slower = transcriber_->transcribe(stretched(samples, howMuch), stop);
        if (!stop.stop_requested()) addCommand(*readings.slower, readings.command);
    } catch (const std::exception&) {
        readings.slower.reset();
    }
}

std::optional<HeardPhrase> Recogniser::recognise(std::span<const std::int16_t> samples,
                                                 const std::stop_token& stop) {
    if (isSilence(samples)) return {};
    Readings readings = read(samples, stop);
    HeardPhrase phrase{.words = {}, .command = {}, .score = scoreOf(0), .runnersUp = {}};
    if (readings.transcript) phrase.words = shownWords(readings.transcript->text);
    auto verdict = judge(graphs_, readings);
    if (!stop.stop_requested() && (!verdict || scoreOf(verdict->likelihood) <= noCommandScore)) {
        readSlower(samples, readings, stop);
        verdict = judge(graphs_, readings);
    }
    if (stop.stop_requested()) return {};
    if (!verdict) return phrase.words.empty() ? std::nullopt : std::optional(phrase);
    phrase.score = scoreOf(verdict->likelihood);
    if (phrase.score > noCommandScore) phrase.words = verdict->best.words;
    phrase.command = verdict->best.command;
    // Where the same words serve several commands, written and spoken words agree on which one is meant.
    const auto written = vocabulary_.recognise(
        verdict->best.words, [this](std::size_t command) { return !graphs_.at(command).empty(); });
    if (written) phrase.command = written->command;
    phrase.runnersUp = std::move(verdict->runnersUp);
    std::erase(phrase.runnersUp, *phrase.command);
    for (std::size_t other = 0; other < graphs_.size(); ++other)
        phrase.mayGoOn =
            phrase.mayGoOn || (other != phrase.command && mayGoOn(graphs_[other], verdict->best.words));
    return phrase;
}

}  // namespace agent
