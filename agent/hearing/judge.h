#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "agent/hearing/command_graph.h"
#include "agent/hearing/decoder.h"

namespace agent {

/// The signals that tell a command from a phrase that only resembles one.
constexpr std::size_t signalCount = 15;
using Signals = std::array<double, signalCount>;

/// What speaks for and against a phrase being the command that it was taken for.
struct Evidence {
    std::size_t command = 0;
    std::vector<std::size_t> runnersUp;  ///< at most two
    std::string words;                   ///< of the command, as it was read
    std::string freeWords;               ///< as the phrase is read without commands
    Signals signals{};
};

/// One phrase, read in three ways.
struct Readings {
    Reading command;
    Reading words;
    Reading sounds;

    /// Whether a word of a command was heard at all.
    bool spoken() const;
};

/// The words of a reading, a blank between them.
std::string wordsOf(const Reading& reading);

/// Compares the readings of a phrase in which a command was heard.
Evidence weigh(const std::vector<CommandGraph>& graphs, const Readings& readings);

/// How likely it is that the phrase was the command, 0 to 1.
double likelihood(const Signals& signals);

/// The score of a likelihood, -100 to 100: a phrase that is more likely none has -60 or less.
int scoreOf(double likelihood);

}  // namespace agent
