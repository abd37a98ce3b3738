#include "agent/voice_grammar.h"

#include <algorithm>
#include <functional>
#include <queue>
#include <tuple>

namespace agent {
namespace {

/// How far a match has come: the state, and the place in the phrase.
struct Place {
    std::size_t position;
    std::size_t state;
    std::size_t skipped;  // words left to `[...]` so far

    friend bool operator>(const Place& one, const Place& other) {
        return std::tie(one.position, one.state, one.skipped) >
               std::tie(other.position, other.state, other.skipped);
    }
};

bool atWordBoundary(std::string_view phrase, std::size_t position) {
    return position == 0 || phrase[position] == ' ' || phrase[position - 1] == ' ';
}

/// Where the arc leads from this place; nothing if the phrase does not go on that way.
std::optional<Place> follow(const VoiceArc& arc, const Place& place, std::string_view phrase) {
    const auto [position, state, skipped] = place;
    if (arc.kind == VoiceArc::Kind::empty) return Place{position, arc.to, skipped};
    if (position == phrase.size()) return {};
    const bool blank = phrase[position] == ' ';
    const std::size_t begin = blank ? position + 1 : position;
    switch (arc.kind) {
        case VoiceArc::Kind::space:
            if (!blank) return {};
            return Place{begin, arc.to, skipped};
        case VoiceArc::Kind::word:
            if (!phrase.substr(begin).starts_with(arc.word)) return {};
            return Place{begin + arc.word.size(), arc.to, skipped};
        default:
            if (!atWordBoundary(phrase, position)) return {};
            return Place{std::min(phrase.find(' ', begin), phrase.size()), arc.to, skipped + 1};
    }
}

}  // namespace

VoiceGrammar::VoiceGrammar(std::string_view grammar) : form_(readVoiceGrammar(grammar)) {
    firstArc_.assign(form_.states + 1, 0);
    for (const VoiceArc& arc : form_.arcs) {
        ++firstArc_[arc.from + 1];
        bytes_ += arc.word.size();
    }
    for (std::size_t state = 0; state < form_.states; ++state) firstArc_[state + 1] += firstArc_[state];
}

std::optional<std::size_t> VoiceGrammar::match(std::string_view phrase) const {
    constexpr std::size_t alwaysAllowed = 500'000;
    constexpr std::size_t allowedPerByte = 4;
    std::size_t work = alwaysAllowed + allowedPerByte * (phrase.size() + form_.arcs.size() + bytes_);

    // Arcs lead onwards in the phrase, or at one place to higher states: in this order a place comes up first
    // with the fewest words that it can be reached with, and has been reached in every way by then.
    std::priority_queue<Place, std::vector<Place>, std::greater<>> agenda;
    if (!phrase.empty()) agenda.push({0, 0, 0});
    for (Place last{0, form_.states, 0}; !agenda.empty();) {
        const Place place = agenda.top();
        agenda.pop();
        if (place.position == last.position && place.state == last.state) continue;
        last = place;
        if (place.position == phrase.size() && place.state == form_.last()) return place.skipped;
        for (std::size_t i = firstArc_[place.state]; i < firstArc_[place.state + 1]; ++i) {
            const VoiceArc& arc = form_.arcs[i];
            const auto next = follow(arc, place, phrase);
            const std::size_t cost = 1 + arc.word.size();
            if (cost > work) return {};
            work -= cost;
            if (next) agenda.push(*next);
        }
    }
    return {};
}

std::vector<std::string_view> VoiceGrammar::mandatoryWords() const {
    std::vector<std::string_view> found;
    std::size_t reached = 0;  // the highest state that the arcs of earlier states lead to
    for (const VoiceArc& arc : form_.arcs) {
        // The only way on, if nothing leads past it. A word leads to the next state and leaves its own alone.
        if (arc.kind == VoiceArc::Kind::word && reached <= arc.from) found.emplace_back(arc.word);
        reached = std::max(reached, arc.to);
    }
    return found;
}

std::vector<std::string_view> VoiceGrammar::words() const {
    std::vector<std::string_view> found;
    for (const VoiceArc& arc : form_.arcs) {
        if (arc.kind == VoiceArc::Kind::word) found.emplace_back(arc.word);
    }
    return found;
}

bool VoiceGrammar::takesAnyWord() const {
    return std::ranges::any_of(form_.arcs,
                               [](const VoiceArc& arc) { return arc.kind == VoiceArc::Kind::anyWord; });
}

}  // namespace agent
