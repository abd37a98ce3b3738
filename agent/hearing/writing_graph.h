#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "agent/hearing/command_graph.h"
#include "agent/hearing/tokens.h"

namespace agent {

/// How all commands may be written down, token by token. A place is where one stands after some tokens.
class WritingGraph {
public:
    WritingGraph(const std::vector<CommandGraph>& commands, const Tokens& tokens);

    struct Place {
        std::size_t node;
        std::string words;  ///< of the command, up to here
    };
    using Places = std::vector<Place>;

    struct Step {
        Token token;
        Places places;  ///< after it
    };

    struct End {
        std::size_t command;
        std::string words;
    };

    /// Before the first token.
    Places begin() const { return reachable({{0, {}}}); }
    /// The same for one command; none if it has nothing to hear.
    Places begin(std::size_t command) const;
    /// The tokens that may follow, with where they lead.
    std::vector<Step> next(const Places& places) const;
    /// Those of the places where any token may follow, and leads back to them: `[...]`.
    Places wild(const Places& places) const;
    /// The commands that may end here.
    std::vector<End> ends(const Places& places) const;

private:
    struct Way {
        Token token;
        std::size_t to;
    };
    struct Node {
        std::vector<Way> ways = {};
        std::vector<std::size_t> open = {};  ///< nodes that are reached without a token
        bool wild = false;
        bool ends = false;
        std::size_t command = 0;
        std::string word = {};  ///< that is complete when one gets here
    };

    /// Some words of a command in a row.
    struct Run {
        std::string letters;  ///< the words without blanks
        std::string words;    ///< and with them
        std::size_t count = 0;
        bool initials = true;  ///< a letter is each of them
        std::size_t to = 0;    ///< the state behind them
    };

    void add(std::size_t command, const CommandGraph& graph, const Tokens& tokens);
    void addRuns(const CommandGraph& graph, std::size_t base, std::size_t from, const Run& before,
                 const Tokens& tokens);
    void addWriting(std::size_t from, std::size_t to, const std::string& words, const std::string& writing,
                    const Tokens& tokens);
    Places reachable(Places places) const;

    std::vector<Node> nodes_{Node{}};
    std::map<std::size_t, std::size_t> first_;  ///< node of each command
};

}  // namespace agent
