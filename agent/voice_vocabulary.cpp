#include "agent/voice_vocabulary.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>
#include <utility>

namespace agent {
namespace {

constexpr int highest = 100;
constexpr int perSkippedWord = 5;
constexpr int lowest = -59;

int scoreOf(std::size_t skipped) {
    constexpr std::size_t atMost = (highest - lowest) / perSkippedWord + 1;
    return std::max(lowest, highest - perSkippedWord * static_cast<int>(std::min(skipped, atMost)));
}

using Uses = std::unordered_map<std::string_view, std::size_t>;

/// The word that the fewest other commands have, of equals the longest.
std::string_view rarest(const std::vector<std::string_view>& words, const Uses& uses) {
    return *std::ranges::min_element(words, {}, [&uses](std::string_view word) {
        return std::pair(uses.at(word), -static_cast<std::ptrdiff_t>(word.size()));
    });
}

}  // namespace

VoiceVocabulary::VoiceVocabulary(const std::vector<std::string_view>& grammars) {
    grammars_.reserve(grammars.size());
    for (const std::string_view grammar : grammars) grammars_.emplace_back(grammar);
    fileUnderWords();
}

void VoiceVocabulary::fileUnderWords() {
    std::vector<std::vector<std::string_view>> mandatory;
    Uses uses;
    for (const VoiceGrammar& grammar : grammars_) {
        mandatory.push_back(grammar.mandatoryWords());
        for (const std::string_view word : mandatory.back()) ++uses[word];
    }
    for (std::size_t command = 0; command < grammars_.size(); ++command) {
        if (!mandatory[command].empty()) {
            index_.add(rarest(mandatory[command], uses), command);
        } else if (grammars_[command].takesAnyWord()) {
            wordless_.push_back(command);
        } else {
            for (const std::string_view word : grammars_[command].words()) index_.add(word, command);
        }
    }
}

std::optional<HeardCommand> VoiceVocabulary::recognise(
    std::string_view words, const std::function<bool(std::size_t command)>& listens) const {
    const std::string phrase = spokenPhrase(words);
    const auto found = index_.find(phrase);
    std::vector<std::size_t> candidates;
    std::ranges::merge(found, wordless_, std::back_inserter(candidates));

    std::optional<HeardCommand> best;
    for (const std::size_t command : candidates) {
        if (!listens(command)) continue;
        const auto skipped = grammars_[command].match(phrase);
        if (skipped && (!best || scoreOf(*skipped) > best->score)) best = {command, scoreOf(*skipped)};
        if (best && best->score == highest) break;
    }
    return best;
}

}  // namespace agent
