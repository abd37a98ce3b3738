#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "agent/hearing/dictionary.h"
#include "agent/hearing/phones.h"

namespace agent {

/// What may be said for one command, in sounds: a way from state 0 to the last state.
struct CommandGraph {
    struct Arc {
        std::size_t from;
        std::size_t to;
        bool anySound = false;                    ///< takes any sounds; leads back to its own state
        std::string word = {};                    ///< empty: the arc takes nothing, or any sounds
        std::vector<Phones> saidAs = {};          ///< of the word, never empty for one
        std::vector<std::string> writtenAs = {};  ///< other writings that sound like the word
    };
    std::size_t states = 1;
    std::vector<Arc> arcs;    ///< in the order of the states that they leave
    bool unwritable = false;  ///< a word of it is in no dictionary, so that who hears it can't write it down

    /// Whether there is anything to hear. A grammar without a word, with a word that cannot be sounded out,
    /// or beyond what a person could ever say (500 states) gives an empty graph.
    bool empty() const { return arcs.empty(); }
};

/// The graph of a grammar as `readVoiceGrammar` reads it.
CommandGraph makeCommandGraph(std::string_view grammar, const Dictionary& dictionary,
                              const SoundOut& soundOut);

/// Fills in `writtenAs` and `unwritable`: words that are said alike ("calendar" for "calender"), and two
/// words for one ("note pad").
void addWritings(std::vector<CommandGraph>& graphs, const Dictionary& dictionary);

/// Whether the words, with blanks between them, are the beginning of something longer that may be said for
/// the command. What a `[...]` takes up does not count.
bool mayGoOn(const CommandGraph& graph, std::string_view words);

/// How far what was heard is from what may be said for the command: the cheapest way to turn one into the
/// other by sounds put in, left out or exchanged, each costing up to 1. Takes time in proportion to both.
double graphDistance(const CommandGraph& graph, const Phones& heard);

}  // namespace agent
