#include "agent/hearing/recogniser.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <future>
#include <random>

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

/// Whether there is nothing but the noise of the samples' own steps.
bool isSilence(std::span<const std::int16_t> samples) {
    constexpr int steps = 20;
    return std::ranges::all_of(samples, [](int sample) { return std::abs(sample) < steps; });
}

/// Words that are far from every command.
std::optional<HeardPhrase> noCommand(const Reading& words) {
    HeardPhrase phrase{.words = wordsOf(words), .command = {}, .score = scoreOf(0), .runnersUp = {}};
    if (phrase.words.empty()) return {};
    return phrase;
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
    auto decoder = Decoder::load(model, *dictionary, graphs);
    if (!decoder) return nullptr;
    return std::unique_ptr<Recogniser>(new Recogniser(grammars, std::move(graphs), std::move(decoder)));
}

Recogniser::Recogniser(const std::vector<std::string>& grammars, std::vector<CommandGraph> graphs,
                       std::unique_ptr<Decoder> decoder)
    : vocabulary_(std::vector<std::string_view>(grammars.begin(), grammars.end())),
      graphs_(std::move(graphs)),
      decoder_(std::move(decoder)) {}

Readings Recogniser::read(std::span<const std::int16_t> samples) {
    Readings readings;
    if (isSilence(samples)) return readings;
    const Samples prepared = prepare(samples);
    // An answer is waited for.
    auto words = std::async(std::launch::async, [&] { return decoder_->asWords(prepared); });
    auto sounds = std::async(std::launch::async, [&] { return decoder_->asSounds(prepared); });
    readings.command = decoder_->asCommand(prepared);
    readings.words = words.get();
    readings.sounds = sounds.get();
    return readings;
}

std::optional<HeardPhrase> Recogniser::recognise(std::span<const std::int16_t> samples) {
    const Readings readings = read(samples);
    if (!readings.spoken()) return noCommand(readings.words);
    Evidence evidence = weigh(graphs_, readings);
    HeardPhrase phrase;
    phrase.score = scoreOf(likelihood(evidence.signals));
    phrase.words = phrase.score > -60 ? evidence.words : evidence.freeWords;
    phrase.command = evidence.command;
    // Where the same words serve several commands, written and spoken words agree on which one is meant.
    const auto written = vocabulary_.recognise(
        evidence.words, [this](std::size_t command) { return !graphs_.at(command).empty(); });
    if (written) phrase.command = written->command;
    phrase.runnersUp = std::move(evidence.runnersUp);
    std::erase(phrase.runnersUp, *phrase.command);
    return phrase;
}

}  // namespace agent
