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

/// The phrase played more slowly, and thus lower, by linear interpolation.
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
    auto decoders = loadDecoders(model, graphs);
    if (!decoders) return nullptr;
    addWritings(graphs, *dictionary);
    auto transcriber = Transcriber::load(model.writing, graphs);
    return std::unique_ptr<Recogniser>(
        new Recogniser(grammars, std::move(graphs), std::move(*decoders), std::move(transcriber)));
}

Recogniser::Recogniser(const std::vector<std::string>& grammars, std::vector<CommandGraph> graphs,
                       Decoders decoders, std::unique_ptr<Transcriber> transcriber)
    : vocabulary_(std::vector<std::string_view>(grammars.begin(), grammars.end())),
      graphs_(std::move(graphs)),
      decoders_(std::move(decoders)),
      transcriber_(std::move(transcriber)) {}

void Recogniser::addCommand(std::optional<Transcript>& transcript, const Reading& reading,
                            const std::stop_token& stop) {
    const auto command = commandOf(reading);
    if (!transcript || !command || stop.stop_requested() ||
        std::ranges::find(transcript->commands, *command, &Transcript::Command::command) !=
            transcript->commands.end())
        return;
    try {
        if (auto written = transcriber_->asCommand(*command))
            transcript->commands.push_back(std::move(*written));
    } catch (const std::exception&) {
        transcript.reset();
    }
}

void Recogniser::readAhead(std::span<const std::int16_t> beginning, const std::stop_token& stop) {
    const std::lock_guard lock(decoding_);
    // An answer is waited for.
    const auto sounds = std::async(std::launch::async, [&] { decoders_.sounds->readAhead(beginning, stop); });
    decoders_.commands->readAhead(beginning, stop);
}

Readings Recogniser::read(std::span<const std::int16_t> samples, const std::stop_token& stop) {
    Readings readings;
    auto transcript = std::async(std::launch::async, [&]() -> std::optional<Transcript> {
        if (!transcriber_) return {};
        return transcriber_->transcribe(samples, stop);
    });
    // A phrase keeps 0.16 seconds of the pause at its end. No more than the first 0.04 of them are read,
    // which have surely been heard, so that nothing is read in vain if the speaker goes on. For the same
    // reason the readings are finished only when the text is there: one that is finished can't go on.
    constexpr std::size_t unneeded = hearingRate * 12 / 100;
    const auto heard = samples.first(samples.size() - std::min(unneeded, samples.size()));
    readAhead(heard, stop);
    try {
        readings.transcript = transcript.get();
    } catch (const std::exception&) {
        // The model has failed: one hears less well without it.
    }
    {
        const std::lock_guard lock(decoding_);
        auto sounds = std::async(std::launch::async, [&] { return decoders_.sounds->read(heard, stop); });
        readings.command = decoders_.commands->read(heard, stop);
        readings.sounds = sounds.get();
    }
    addCommand(readings.transcript, readings.command, stop);
    return readings;
}

void Recogniser::readSlower(std::span<const std::int16_t> samples, Readings& readings,
                            const std::stop_token& stop) {
    constexpr double howMuch = 1.1;
    if (!readings.transcript) return;
    try {
        readings.slower = transcriber_->transcribe(stretched(samples, howMuch), stop);
    } catch (const std::exception&) {
        readings.slower.reset();
    }
    addCommand(readings.slower, readings.command, stop);
}

std::optional<HeardPhrase> Recogniser::recognise(std::span<const std::int16_t> samples,
                                                 const std::stop_token& stop) {
    if (isSilence(samples)) return {};
    Readings readings = read(samples, stop);
    HeardPhrase phrase{.words = {}, .command = {}, .score = scoreOf(0), .runnersUp = {}};
    if (readings.transcript) phrase.words = shownWords(readings.transcript->text);
    auto verdict = judge(graphs_, readings);
    if (!stop.stop_requested() && verdict && isUnclear(verdict->likelihood)) {
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
