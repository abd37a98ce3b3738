#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "agent/speech_text.h"

namespace agent {

/// The words as a document for the synthesiser: before each word stands a mark with its index, counted from
/// `first`. Characters that have no place in a document are left out.
std::string toSsml(std::span<const SpokenWord> words, std::size_t first);

/// How many of the words, at least one, make a piece that is well said in one go: up to the end of a
/// sentence, if there is one not too far on. `words` is not empty.
std::size_t sentenceLength(std::span<const SpokenWord> words);

}  // namespace agent
