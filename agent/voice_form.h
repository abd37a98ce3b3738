#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

/// One way from a state of a form to another.
struct VoiceArc {
    enum class Kind {
        word,     ///< takes `word`; a blank may stand before it, or be missing
        space,    ///< takes a blank, between two words that must not be written as one
        empty,    ///< takes nothing
        anyWord,  ///< takes one whole word, whatever it is; leads back to its own state
    };
    std::size_t from;
    std::size_t to;
    Kind kind;
    std::string word = {};  ///< as `spokenPhrase` writes it
};

/// What may be said, as a graph: a phrase fits if it is taken up on a way from state 0 to the last state.
/// Every arc but those of kind `anyWord` leads to a state with a higher number.
struct VoiceForm {
    std::size_t states = 1;
    std::vector<VoiceArc> arcs;  ///< in the order of the states that they leave

    std::size_t last() const { return states - 1; }
};

/// A text as phrases are compared: in UTF-8, letters in lower case, words separated by one blank, none at the
/// ends.
std::string spokenPhrase(std::string_view text);

/// The form of a grammar: `[x]` may be left out, `[a|b]` is one of them or none, `(a|b)` exactly one, `[...]`
/// any words or none. A blank beside a bracket means nothing: the phrase may have one there or not. A text
/// that uses these signs in any other way is taken as the plain words that it holds. Takes time in proportion
/// to the text, however deep it is nested.
VoiceForm readVoiceGrammar(std::string_view grammar);

}  // namespace agent
