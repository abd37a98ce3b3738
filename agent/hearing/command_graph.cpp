#include "agent/hearing/command_graph.h"

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

#include "agent/voice_form.h"

namespace agent {
namespace {

constexpr std::size_t mostStates = 500;
constexpr double unheard = std::numeric_limits<double>::infinity();

/// The cost of each number of heard sounds taken up so far.
using Costs = std::vector<double>;

void takeBetter(Costs& into, const Costs& from) {
    for (std::size_t i = 0; i < into.size(); ++i) into[i] = std::min(into[i], from[i]);
}

Costs afterWord(Costs costs, const Phones& word, const Phones& heard) {
    constexpr double missing = 1;
    constexpr double added = 0.9;
    for (const Phone phone : word) {
        double diagonal = costs[0];
        costs[0] += missing;
        for (std::size_t i = 1; i < costs.size(); ++i) {
            const double exchanged = diagonal + phoneDifference(phone, heard[i - 1]);
            diagonal = costs[i];
            costs[i] = std::min({costs[i] + missing, exchanged, costs[i - 1] + added});
        }
    }
    return costs;
}

/// The ways to write a word as two.
std::vector<std::string> partsOf(const std::string& word, const Dictionary& dictionary) {
    constexpr std::size_t shortest = 3;
    std::vector<std::string> all;
    for (std::size_t length = shortest; length + shortest <= word.size(); ++length) {
        const std::string left = word.substr(0, length);
        const std::string right = word.substr(length);
        if (dictionary.pronunciations(left).empty() || dictionary.pronunciations(right).empty()) continue;
        all.push_back(std::string(left).append(" ").append(right));
    }
    return all;
}

void takeAnySounds(Costs& costs) {
    for (std::size_t i = 1; i < costs.size(); ++i) costs[i] = std::min(costs[i], costs[i - 1]);
}

}  // namespace

CommandGraph makeCommandGraph(std::string_view grammar, const Dictionary& dictionary,
                              const SoundOut& soundOut) {
    const VoiceForm form = readVoiceGrammar(grammar);
    CommandGraph graph;
    if (form.states > mostStates) return graph;
    graph.states = form.states;
    bool spoken = false;
    for (const VoiceArc& arc : form.arcs) {
        CommandGraph::Arc taken{.from = arc.from, .to = arc.to};
        taken.anySound = arc.kind == VoiceArc::Kind::anyWord;
        if (arc.kind == VoiceArc::Kind::word) {
            taken.word = arc.word;
            taken.saidAs = dictionary.pronunciations(arc.word);
            if (taken.saidAs.empty() && soundOut) taken.saidAs.push_back(soundOut(arc.word));
            std::erase_if(taken.saidAs, [](const Phones& phones) { return phones.empty(); });
            if (taken.saidAs.empty()) return {};
            spoken = true;
        }
        graph.arcs.push_back(std::move(taken));
    }
    return spoken ? graph : CommandGraph{};
}

void addWritings(std::vector<CommandGraph>& graphs, const Dictionary& dictionary) {
    std::set<std::string> sounds;
    for (const CommandGraph& graph : graphs) {
        for (const CommandGraph::Arc& arc : graph.arcs) {
            for (const Phones& phones : arc.saidAs) sounds.insert(phoneText(phones));
        }
    }
    const auto alike = dictionary.wordsSaidAs(sounds);
    for (CommandGraph& graph : graphs) {
        for (CommandGraph::Arc& arc : graph.arcs) {
            std::set<std::string> writings;
            for (const Phones& phones : arc.saidAs) {
                if (const auto words = alike.find(phoneText(phones)); words != alike.end())
                    writings.insert(words->second.begin(), words->second.end());
            }
            for (auto& parts : partsOf(arc.word, dictionary)) writings.insert(std::move(parts));
            writings.erase(arc.word);
            arc.writtenAs.assign(writings.begin(), writings.end());
            const bool known =
                arc.word.empty() || !writings.empty() || !dictionary.pronunciations(arc.word).empty();
            graph.unwritable = graph.unwritable || !known;
        }
    }
}

bool mayGoOn(const CommandGraph& graph, std::string_view words) {
    std::vector<bool> reached(graph.states);
    reached[0] = true;
    bool on = false;
    // Arcs lead to later states only, so that one pass takes in those without a word.
    const auto pass = [&](std::string_view word) {
        std::vector<bool> next(graph.states);
        on = false;
        for (const CommandGraph::Arc& arc : graph.arcs) {
            if (!reached[arc.from] || arc.anySound) continue;
            if (arc.word.empty()) reached[arc.to] = true;
            if (arc.word.empty()) continue;
            on = true;
            if (arc.word == word) next[arc.to] = true;
        }
        reached = std::move(next);
    };
    while (!words.empty()) {
        const auto end = std::min(words.find(' '), words.size());
        pass(words.substr(0, end));
        words.remove_prefix(std::min(end + 1, words.size()));
    }
    pass({});
    return on;
}

double graphDistance(const CommandGraph& graph, const Phones& heard) {
    std::vector<Costs> reached(graph.states, Costs(heard.size() + 1, unheard));
    // Sounds before the first word cost as much as anywhere.
    for (std::size_t i = 0; i <= heard.size(); ++i) reached[0][i] = 0.9 * static_cast<double>(i);
    for (const CommandGraph::Arc& arc : graph.arcs) {
        if (arc.anySound) takeAnySounds(reached[arc.from]);
        if (arc.from == arc.to) continue;
        if (arc.saidAs.empty()) takeBetter(reached[arc.to], reached[arc.from]);
        for (const Phones& word : arc.saidAs)
            takeBetter(reached[arc.to], afterWord(reached[arc.from], word, heard));
    }
    return reached.back().back();
}

}  // namespace agent
