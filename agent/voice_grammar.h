#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "agent/voice_form.h"

namespace agent {

/// What may be said for one command. `readVoiceGrammar` tells how a grammar is written.
class VoiceGrammar {
public:
    explicit VoiceGrammar(std::string_view grammar);

    /// How few words of the phrase, written as `spokenPhrase` gives it, are left to `[...]`; nothing if it
    /// does not fit. An empty phrase fits nothing. A huge phrase for a huge grammar of many optional parts is
    /// given up after work in proportion to both, and then does not fit.
    std::optional<std::size_t> match(std::string_view phrase) const;

    const VoiceForm& form() const { return form_; }

    /// The words that every phrase holds, in their order.
    std::vector<std::string_view> mandatoryWords() const;
    /// Every word of the grammar, in its order.
    std::vector<std::string_view> words() const;
    /// Whether there is a `[...]`.
    bool takesAnyWord() const;

private:
    VoiceForm form_;
    std::vector<std::size_t> firstArc_;  // by state, and one more: where its arcs begin
    std::size_t bytes_ = 0;              // of all words
};

}  // namespace agent
