#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "agent/speech_text.h"

namespace agent {

/// The words as a document for the synthesiser: before each word stands a mark with its index, counted from
/// `first`, and a stressed one is emphasised. Characters that have no place in a document are left out.
std::string toSsml(std::span<const SpokenWord> words, std::size_t first);

}  // namespace agent
