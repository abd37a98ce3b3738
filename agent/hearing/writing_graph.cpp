#include "agent/hearing/writing_graph.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace agent {
namespace {

/// How the model may write words: the first one as a name too, a short text as an abbreviation.
std::set<std::string> formsOf(const std::string& writing) {
    constexpr std::size_t longestAbbreviation = 4;
    const auto upper = [](char letter) {
        return static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    };
    std::string name = writing;
    name.front() = upper(name.front());
    std::set<std::string> forms{writing, name};
    if (writing.size() <= longestAbbreviation) {
        std::ranges::transform(name, name.begin(), upper);
        forms.insert(std::move(name));
    }
    return forms;
}

std::string withMarks(std::string text) {
    for (auto at = text.find(' '); at != std::string::npos; at = text.find(' ', at))
        text.replace(at, 1, Tokens::wordMark);
    return std::string(Tokens::wordMark).append(text);
}

}  // namespace

WritingGraph::WritingGraph(const std::vector<CommandGraph>& commands, const Tokens& tokens) {
    for (std::size_t command = 0; command < commands.size(); ++command) {
        if (!commands[command].empty()) add(command, commands[command], tokens);
    }
}

void WritingGraph::add(std::size_t command, const CommandGraph& graph, const Tokens& tokens) {
    const std::size_t base = nodes_.size();
    nodes_.resize(base + graph.states);
    nodes_.front().open.push_back(base);
    first_.emplace(command, base);
    nodes_.back().ends = true;
    nodes_.back().command = command;
    for (const CommandGraph::Arc& arc : graph.arcs) {
        const std::size_t from = base + arc.from;
        const std::size_t to = base + arc.to;
        if (arc.anySound) {
            nodes_[from].wild = true;
        } else if (arc.word.empty()) {
            nodes_[from].open.push_back(to);
        } else {
            for (const std::string& writing : arc.writtenAs) addWriting(from, to, arc.word, writing, tokens);
            Run run{.letters = arc.word,
                    .words = arc.word,
                    .count = 1,
                    .initials = arc.word.size() == 1,
                    .to = arc.to};
            addWriting(from, to, run.words, run.letters, tokens);
            addRuns(graph, base, arc.from, run, tokens);
        }
    }
}

/// Two words may be written as one ("internet"), and any number of letters ("CD").
void WritingGraph::addRuns(const CommandGraph& graph, std::size_t base, std::size_t from, const Run& before,
                           const Tokens& tokens) {
    constexpr std::size_t mostInitials = 6;
    for (const CommandGraph::Arc& arc : graph.arcs) {
        if (arc.from != before.to || arc.anySound) continue;
        if (arc.word.empty()) {
            Run same = before;
            same.to = arc.to;
            addRuns(graph, base, from, same, tokens);
            continue;
        }
        Run run{.letters = before.letters + arc.word,
                .words = before.words + ' ' + arc.word,
                .count = before.count + 1,
                .initials = before.initials && arc.word.size() == 1,
                .to = arc.to};
        if (run.count > 2 && (!run.initials || run.count > mostInitials)) continue;
        addWriting(base + from, base + arc.to, run.words, run.letters, tokens);
        if (run.initials) addRuns(graph, base, from, run, tokens);
    }
}

void WritingGraph::addWriting(std::size_t from, std::size_t to, const std::string& words,
                              const std::string& writing, const Tokens& tokens) {
    const std::size_t complete = nodes_.size();
    nodes_.push_back({.open = {to}, .word = words});
    for (const std::string& form : formsOf(writing)) {
        const TokenList spelling = tokens.split(withMarks(form));
        std::size_t at = from;
        for (std::size_t i = 0; i < spelling.size(); ++i) {
            std::size_t next = complete;
            if (i + 1 < spelling.size()) {
                next = nodes_.size();
                nodes_.emplace_back();
            }
            nodes_[at].ways.push_back({spelling[i], next});
            at = next;
        }
    }
}

WritingGraph::Places WritingGraph::begin(std::size_t command) const {
    const auto first = first_.find(command);
    return first == first_.end() ? Places{} : reachable({{first->second, {}}});
}

WritingGraph::Places WritingGraph::reachable(Places places) const {
    std::set<std::size_t> seen;
    Places all;
    while (!places.empty()) {
        Place place = std::move(places.back());
        places.pop_back();
        if (!seen.insert(place.node).second) continue;
        const Node& node = nodes_[place.node];
        if (!node.word.empty()) place.words.append(place.words.empty() ? "" : " ").append(node.word);
        for (const std::size_t open : node.open) places.push_back({open, place.words});
        all.push_back(std::move(place));
    }
    return all;
}

std::vector<WritingGraph::Step> WritingGraph::next(const Places& places) const {
    std::map<Token, Places> ways;
    for (const Place& place : places) {
        for (const Way& way : nodes_[place.node].ways) ways[way.token].push_back({way.to, place.words});
    }
    std::vector<Step> steps;
    steps.reserve(ways.size());
    for (auto& [token, reached] : ways) steps.push_back({token, reachable(std::move(reached))});
    return steps;
}

WritingGraph::Places WritingGraph::wild(const Places& places) const {
    Places found;
    std::ranges::copy_if(places, std::back_inserter(found),
                         [this](const Place& place) { return nodes_[place.node].wild; });
    return reachable(std::move(found));
}

std::vector<WritingGraph::End> WritingGraph::ends(const Places& places) const {
    std::vector<End> found;
    for (const Place& place : places) {
        if (nodes_[place.node].ends) found.push_back({nodes_[place.node].command, place.words});
    }
    return found;
}

}  // namespace agent
