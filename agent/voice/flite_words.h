#pragma once

// Its header knows nothing of C++.
extern "C" {
#include <flite/flite.h>
}

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "agent/speech_text.h"

namespace agent {

struct DeleteUtterance {
    void operator()(cst_utterance* utterance) const { delete_utterance(utterance); }
};

/// What the library makes of a text on its way to speech, step by step.
using UtteranceTree = std::unique_ptr<cst_utterance, DeleteUtterance>;

/// Puts words into a tree that has none yet, as a text that the library is to analyse. False: nothing is left
/// of them to be said.
bool addText(cst_utterance& tree, std::span<const SpokenWord> words);

/// What the library reads the text of a tree as: "12:30" is "twelve", "thirty". It analyses the text.
std::vector<std::string> readAs(cst_utterance& tree);

/// Puts words into a tree that has none yet, which are said as they are, all of them for one word of the
/// line.
void addRead(cst_utterance& tree, std::span<const std::string> read, bool stressed);

/// The index, among the words that the tree was given, of the one that a sound belongs to; or -1.
int wordOf(const cst_item* sound);

}  // namespace agent
