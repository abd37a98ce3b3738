#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "agent/hearing/command_graph.h"
#include "agent/hearing/decoder.h"
#include "agent/hearing/transcriber.h"

namespace agent {

/// One phrase, read in different ways.
struct Readings {
    Reading command;
    Reading sounds;
    std::optional<Transcript> transcript = {};  ///< none without the model for it
    std::optional<Transcript> slower = {};      ///< the same of the phrase played more slowly, if it was
};

/// The command that the words of a reading belong to, if there is a word in it.
std::optional<std::size_t> commandOf(const Reading& reading);

/// The words of a reading, a blank between them.
std::string wordsOf(const Reading& reading);

/// The signals that tell a command from a phrase that only resembles one.
constexpr std::size_t signalCount = 12;
using Signals = std::array<double, signalCount>;

/// A command that the phrase may have been, and what speaks for and against it.
struct Candidate {
    std::size_t command = 0;
    std::string words;
    Signals signals{};
};

/// Compares the readings of a phrase. None: it is like no command at all.
std::vector<Candidate> candidates(const std::vector<CommandGraph>& graphs, const Readings& readings);

/// What each signal counts for, and what is added to their sum.
struct JudgeWeights {
    double bias = 0;
    Signals weights{};

    /// How likely it is that the phrase was the command, 0 to 1.
    double likelihood(const Signals& signals) const;
};

/// As they were learned for phrases with a transcript, or without.
const JudgeWeights& judgeWeights(bool withTranscript);

/// What a phrase was taken for.
struct Verdict {
    Candidate best;
    double likelihood;
    std::vector<std::size_t> runnersUp;  ///< at most two other commands, the likelier first
};
std::optional<Verdict> judge(const std::vector<CommandGraph>& graphs, const Readings& readings);

/// At and below this score a phrase is taken for no command.
constexpr int noCommandScore = -60;

/// Whether a second reading may make a command of a phrase, with this likelihood after the first: it is none
/// yet, and not hopeless.
bool isUnclear(double likelihood);

/// The score of a likelihood, -100 to 100: a phrase that is more likely none has `noCommandScore` or less.
int scoreOf(double likelihood);

}  // namespace agent
