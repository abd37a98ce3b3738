#pragma once

#include <cstddef>

#include "agent/voice/flite_words.h"
#include "agent/voice/synthesizer.h"

namespace agent {

/// What is to be made of a tree.
struct StreamedPhrase {
    const Phrase& phrase;
    std::size_t told = 0;  ///< how many of its words have had their event
    int sampleRate;
};

/// Lets the library make speech of the words of a tree, and passes it on piece by piece as it comes, the
/// silence around it cut.
void stream(cst_utterance& tree, const StreamedPhrase& streamed, const SpeechReceiver& receiver);

}  // namespace agent
