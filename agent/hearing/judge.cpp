#include "agent/hearing/judge.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "agent/hearing/judge_weights.h"

namespace agent {
namespace {

using Kind = HeardPiece::Kind;

/// What the reading makes of a stretch of audio; of pieces that reach beyond it, their share.
double fitWithin(const Reading& reading, int first, int frames) {
    double fit = 0;
    for (const HeardPiece& piece : reading) {
        const int shared =
            std::min(piece.first + piece.frames, first + frames) - std::max(piece.first, first);
        if (shared > 0) fit += piece.fit * shared / piece.frames;
    }
    return fit;
}

int framesOf(const Reading& reading, Kind kind) {
    int frames = 0;
    for (const HeardPiece& piece : reading) frames += piece.kind == kind ? piece.frames : 0;
    return frames;
}

Phones phonesOf(const Reading& reading) {
    Phones phones;
    for (const HeardPiece& piece : reading)
        phones.insert(phones.end(), piece.phones.begin(), piece.phones.end());
    return phones;
}

/// How the words of a command lie in the sound.
struct Alignment {
    double sounds = 0;    ///< in its words
    double gap = 0;       ///< how much better free sounds explain a frame of them
    double worstGap = 0;  ///< of the worst word
    double slowest = 1;   ///< frames for each sound of the most drawn-out word
    double fastest = 1;   ///< and of the most hurried one
    double stray = 0;     ///< the share of the phrase that other sounds take up
};

Alignment align(const Reading& command, const Reading& free) {
    Alignment alignment{.slowest = 0, .fastest = std::numeric_limits<double>::max()};
    int frames = 0;
    for (const HeardPiece& piece : command) {
        if (piece.kind != Kind::word) continue;
        const auto sounds = static_cast<double>(piece.phones.size());
        alignment.sounds += sounds;
        const double lost = fitWithin(free, piece.first, piece.frames) - piece.fit;
        alignment.gap += lost;
        alignment.worstGap = std::max(alignment.worstGap, lost / piece.frames);
        const double pace = piece.frames / sounds;
        alignment.slowest = std::max(alignment.slowest, pace);
        alignment.fastest = std::min(alignment.fastest, pace);
        frames += piece.frames;
    }
    alignment.gap /= std::max(frames, 1);
    alignment.fastest = std::clamp(alignment.fastest, 1.0, std::max(alignment.slowest, 1.0));
    const int stray = framesOf(command, Kind::sound);
    const int all = frames + stray + framesOf(command, Kind::silence);
    alignment.stray = static_cast<double>(stray) / std::max(all, 1);
    return alignment;
}

/// How far each command is from the sounds that were heard.
std::vector<double> distances(const std::vector<CommandGraph>& graphs, const Reading& sounds) {
    const Phones heard = phonesOf(sounds);
    std::vector<double> all;
    all.reserve(graphs.size());
    for (const CommandGraph& graph : graphs)
        all.push_back(graph.empty() ? std::numeric_limits<double>::infinity() : graphDistance(graph, heard));
    return all;
}

double nearestOther(const std::vector<double>& distances, std::size_t command) {
    constexpr double farthest = 20;
    double nearest = farthest;
    for (std::size_t other = 0; other < distances.size(); ++other) {
        if (other != command) nearest = std::min(nearest, distances[other]);
    }
    return nearest;
}

/// The number of sounds that writing down a phrase took up, at least one.
double lengthOf(const std::string& text) {
    constexpr double lettersForOneSound = 1.25;
    const auto letters = std::ranges::count_if(text, [](char letter) { return letter != ' '; });
    return std::max(static_cast<double>(letters) / lettersForOneSound, 1.0);
}

/// The signals of a command; the first ones are 0 without a transcript, the middle ones where another command
/// was aligned with the sound.
Signals signalsOf(const Readings& readings, const Candidate& candidate, const Alignment* alignment,
                  const std::vector<double>& distances, const std::optional<Transcript>& transcript,
                  std::optional<double> logLikelihood) {
    constexpr double usualPace = 2.1;  // logarithm of the frames for each sound
    constexpr double hopeless = -25;
    const double length = alignment == nullptr ? lengthOf(candidate.words) : alignment->sounds;
    const double spoken = std::max(framesOf(readings.sounds, Kind::sound), 1);
    const double distance = distances.at(candidate.command);
    const double rival = nearestOther(distances, candidate.command);
    double lost = 0;
    double doubt = 0;
    if (transcript) {
        lost =
            logLikelihood ? std::clamp(*logLikelihood - transcript->logLikelihood, hopeless, 5.0) : hopeless;
        doubt = transcript->logLikelihood / lengthOf(transcript->text);
    }
    const Alignment none;
    const Alignment& aligned = alignment == nullptr ? none : *alignment;
    return {
        lost / length,
        doubt,
        alignment == nullptr ? 0.0 : 1.0,
        aligned.gap,
        aligned.worstGap,
        std::log(aligned.slowest),
        std::log(aligned.fastest),
        aligned.stray,
        distance / length,
        std::clamp(rival - distance, -3.0, 6.0),
        1 / length,
        std::abs(std::log(spoken / length) - usualPace),
    };
}

/// The candidates, with the distances of all commands.
std::vector<Candidate> candidates(const Readings& readings, const std::vector<double>& far) {
    const auto aligned = commandOf(readings.command);
    const Alignment alignment = align(readings.command, readings.sounds);
    std::vector<Candidate> all;
    const auto addFrom = [&](const std::optional<Transcript>& transcript) {
        const auto add = [&](std::size_t command, const std::string& words,
                             std::optional<double> logLikelihood) {
            Candidate& candidate = all.emplace_back(Candidate{.command = command, .words = words});
            candidate.signals = signalsOf(readings, candidate, command == aligned ? &alignment : nullptr, far,
                                          transcript, logLikelihood);
        };
        bool written = false;
        if (transcript) {
            for (const auto& [command, words, logLikelihood] : transcript->commands) {
                add(command, words, logLikelihood);
                written = written || command == aligned;
            }
        }
        if (aligned && !written) add(*aligned, wordsOf(readings.command), {});
    };
    addFrom(readings.transcript);
    if (readings.slower) addFrom(readings.slower);
    return all;
}

}  // namespace

std::optional<std::size_t> commandOf(const Reading& reading) {
    const auto word = std::ranges::find(reading, Kind::word, &HeardPiece::kind);
    return word == reading.end() ? std::nullopt : std::optional(word->command);
}

std::string wordsOf(const Reading& reading) {
    std::string words;
    for (const HeardPiece& piece : reading) {
        if (!piece.word.empty()) words.append(words.empty() ? "" : " ").append(piece.word);
    }
    return words;
}

std::vector<Candidate> candidates(const std::vector<CommandGraph>& graphs, const Readings& readings) {
    return candidates(readings, distances(graphs, readings.sounds));
}

double JudgeWeights::likelihood(const Signals& signals) const {
    double sum = bias;
    for (std::size_t i = 0; i < signals.size(); ++i) sum += weights.at(i) * signals.at(i);
    return 1 / (1 + std::exp(-sum));
}

const JudgeWeights& judgeWeights(bool withTranscript) {
    return withTranscript ? weightsWithTranscript : weightsWithoutTranscript;
}

std::optional<Verdict> judge(const std::vector<CommandGraph>& graphs, const Readings& readings) {
    const std::vector<double> far = distances(graphs, readings.sounds);
    std::vector<std::pair<double, Candidate>> ranked;
    for (Candidate& candidate : candidates(readings, far)) {
        const bool written = readings.transcript && !graphs.at(candidate.command).unwritable;
        ranked.emplace_back(judgeWeights(written).likelihood(candidate.signals), std::move(candidate));
    }
    if (ranked.empty()) return {};
    std::ranges::stable_sort(ranked, std::greater(), [](const auto& entry) { return entry.first; });
    Verdict verdict{std::move(ranked.front().second), ranked.front().first, {}};
    // The other candidates, then those that sound alike.
    std::vector<std::size_t> others;
    for (std::size_t command = 0; command < graphs.size(); ++command) {
        if (!graphs[command].empty()) others.push_back(command);
    }
    std::ranges::stable_sort(others, {}, [&far](std::size_t command) { return far[command]; });
    const auto addRunnerUp = [&verdict](std::size_t command) {
        constexpr std::size_t most = 2;
        if (command != verdict.best.command && verdict.runnersUp.size() < most &&
            std::ranges::find(verdict.runnersUp, command) == verdict.runnersUp.end())
            verdict.runnersUp.push_back(command);
    };
    for (const auto& [likelihood, candidate] : ranked) addRunnerUp(candidate.command);
    for (const std::size_t command : others) addRunnerUp(command);
    return verdict;
}

bool isUnclear(double likelihood) {
    // Of the 712 commands in the voices that were learned from, one passed from further below.
    constexpr double hopeless = 0.02;
    return likelihood > hopeless && scoreOf(likelihood) <= noCommandScore;
}

int scoreOf(double likelihood) {
    constexpr double floor = noCommandScore;
    const double even = 0.5;
    const double score = likelihood <= even ? floor - 40 * (even - likelihood) / even
                                            : floor + 1 + 159 * (likelihood - even) / (1 - even);
    return static_cast<int>(std::clamp(std::floor(score), -100.0, 100.0));
}

}  // namespace agent
