#include "agent/hearing/judge.h"

#include <algorithm>
#include <cmath>
#include <limits>

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

/// How much better another reading explains the words of a command, for each frame.
struct Gap {
    double mean = 0;
    double worst = 0;
};

Gap gapTo(const Reading& other, const Reading& command) {
    Gap gap;
    int frames = 0;
    for (const HeardPiece& piece : command) {
        if (piece.kind != Kind::word) continue;
        const double lost = fitWithin(other, piece.first, piece.frames) - piece.fit;
        gap.mean += lost;
        gap.worst = std::max(gap.worst, lost / piece.frames);
        frames += piece.frames;
    }
    gap.mean /= std::max(frames, 1);
    return gap;
}

/// The sounds that a reading finds in a stretch of audio; those of a word are taken for equally long.
Phones phonesWithin(const Reading& reading, int first, int frames) {
    Phones phones;
    for (const HeardPiece& piece : reading) {
        const double each = static_cast<double>(piece.frames) / static_cast<double>(piece.phones.size());
        double middle = piece.first + each / 2;
        for (const Phone phone : piece.phones) {
            if (middle >= first && middle < first + frames) phones.push_back(phone);
            middle += each;
        }
    }
    return phones;
}

/// How far the strangest word of a command is from what another reading finds in its place, for each sound.
double strangestWord(const Reading& other, const Reading& command) {
    double farthest = 0;
    for (const HeardPiece& piece : command) {
        if (piece.kind != Kind::word) continue;
        const CommandGraph word{.states = 2, .arcs = {{.from = 0, .to = 1, .saidAs = {piece.phones}}}};
        const double distance = graphDistance(word, phonesWithin(other, piece.first, piece.frames));
        farthest = std::max(farthest, distance / static_cast<double>(piece.phones.size()));
    }
    return farthest;
}

Phones phonesOf(const Reading& reading) {
    Phones phones;
    for (const HeardPiece& piece : reading)
        phones.insert(phones.end(), piece.phones.begin(), piece.phones.end());
    return phones;
}

int framesOf(const Reading& reading, Kind kind) {
    int frames = 0;
    for (const HeardPiece& piece : reading) frames += piece.kind == kind ? piece.frames : 0;
    return frames;
}

/// Commands by how near they are to what was heard, the winner left out.
struct Rivals {
    std::vector<std::size_t> nearest;  // at most two
    double distance;                   // of the nearest
};

Rivals rivals(const std::vector<CommandGraph>& graphs, std::size_t winner, const Phones& words,
              const Phones& sounds) {
    std::vector<std::pair<double, std::size_t>> ranked;
    for (std::size_t command = 0; command < graphs.size(); ++command) {
        if (command == winner || graphs[command].empty()) continue;
        const double distance =
            std::min(graphDistance(graphs[command], words), graphDistance(graphs[command], sounds));
        ranked.emplace_back(distance, command);
    }
    std::ranges::sort(ranked);
    Rivals found{.nearest = {}, .distance = ranked.empty() ? 20 : ranked.front().first};
    for (std::size_t i = 0; i < std::min<std::size_t>(2, ranked.size()); ++i)
        found.nearest.push_back(ranked[i].second);
    return found;
}

}  // namespace

std::string wordsOf(const Reading& reading) {
    std::string words;
    for (const HeardPiece& piece : reading) {
        if (!piece.word.empty()) words.append(words.empty() ? "" : " ").append(piece.word);
    }
    return words;
}

bool Readings::spoken() const {
    return std::ranges::any_of(command, [](const HeardPiece& piece) { return piece.kind == Kind::word; });
}

Evidence weigh(const std::vector<CommandGraph>& graphs, const Readings& readings) {
    const auto& [command, words, sounds] = readings;
    Evidence evidence;
    Phones expected;
    double longest = 0;
    double shortest = std::numeric_limits<double>::max();
    for (const HeardPiece& piece : command) {
        if (piece.kind != Kind::word) continue;
        evidence.command = piece.command;
        expected.insert(expected.end(), piece.phones.begin(), piece.phones.end());
        const double perPhone = static_cast<double>(piece.frames) / static_cast<double>(piece.phones.size());
        longest = std::max(longest, perPhone);
        shortest = std::min(shortest, perPhone);
    }
    evidence.words = wordsOf(command);
    evidence.freeWords = wordsOf(words);

    const auto length = static_cast<double>(std::max<std::size_t>(expected.size(), 1));
    const Phones asWords = phonesOf(words);
    const Phones asSounds = phonesOf(sounds);
    const CommandGraph& graph = graphs.at(evidence.command);
    const double farWords = graphDistance(graph, asWords);
    const double farSounds = graphDistance(graph, asSounds);
    Rivals others = rivals(graphs, evidence.command, asWords, asSounds);
    evidence.runnersUp = std::move(others.nearest);

    const Gap toWords = gapTo(words, command);
    const Gap toSounds = gapTo(sounds, command);
    const int spoken = framesOf(command, Kind::word);
    const int stray = framesOf(command, Kind::sound);
    const int total = spoken + stray + framesOf(command, Kind::silence);
    const int freely = std::max(framesOf(words, Kind::word), 1);
    evidence.signals = {
        toWords.mean,
        toWords.worst,
        toSounds.mean,
        toSounds.worst,
        farWords / length,
        farSounds / length,
        std::min(farWords, farSounds) / length,
        std::clamp(others.distance - std::min(farWords, farSounds), -3.0, 6.0),
        1 / length,
        std::log(longest),
        std::log(std::max(shortest, 1.0)),
        static_cast<double>(std::max(freely - spoken - stray, 0)) / freely,
        static_cast<double>(stray) / std::max(total, 1),
        evidence.words == evidence.freeWords ? 1.0 : 0.0,
        strangestWord(sounds, command),
    };
    return evidence;
}

double likelihood(const Signals& signals) {
    double sum = judgeBias;
    for (std::size_t i = 0; i < signals.size(); ++i) sum += judgeWeights.at(i) * signals.at(i);
    return 1 / (1 + std::exp(-sum));
}

int scoreOf(double likelihood) {
    constexpr double floor = -60;
    const double even = 0.5;
    const double score = likelihood <= even ? floor - 40 * (even - likelihood) / even
                                            : floor + 1 + 159 * (likelihood - even) / (1 - even);
    return static_cast<int>(std::clamp(std::floor(score), -100.0, 100.0));
}

}  // namespace agent
