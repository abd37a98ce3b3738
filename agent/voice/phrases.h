#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "agent/speech_text.h"

namespace agent {

/// How many of the words, at least one, are said in one go: up to the end of a sentence, if there is one not
/// too far on; to where they are to be said in another way, or a pause stands; and at most `limit` of them,
/// or a few less where that falls between two groups of words. `words` is not empty, `limit` not 0.
std::size_t phraseLength(std::span<const SpokenWord> words, std::size_t limit);

/// About how many letters it takes to write a word as it is said, a space behind it included: digits and
/// signs stand for words.
std::size_t lettersToSay(const SpokenWord& word);

/// Whether a rest follows the word: it ends a sentence.
bool endsSentence(const SpokenWord& word);

/// A word as it is read in its context: the symbols of an e-mail address, the abbreviations and numbers of a
/// postal one.
std::string readAloud(std::string_view word, Delivery::Context context);

}  // namespace agent
