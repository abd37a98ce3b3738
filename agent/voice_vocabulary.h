#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "agent/keyword_index.h"
#include "agent/voice_grammar.h"

namespace agent {

/// Which command was heard, counted from 0, and how well: 100, five less for each word left to `[...]`, never
/// under -59.
struct HeardCommand {
    std::size_t command;
    int score;
};

/// The grammars of many commands, one of which a phrase is to fit. The time that takes hardly depends on how
/// many there are.
class VoiceVocabulary {
public:
    /// A command without a word in its grammar is never heard.
    explicit VoiceVocabulary(const std::vector<std::string_view>& grammars);

    /// The command that fits the words best, of equals the earlier one, among those for which `listens` is
    /// true. Case of the letters A to Z and extra blanks don't matter.
    std::optional<HeardCommand> recognise(std::string_view words,
                                          const std::function<bool(std::size_t command)>& listens) const;

private:
    void fileUnderWords();

    std::vector<VoiceGrammar> grammars_;
    KeywordIndex index_;
    std::vector<std::size_t> wordless_;  // commands that no word of theirs gives away
};

}  // namespace agent
