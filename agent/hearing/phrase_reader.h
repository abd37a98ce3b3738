#pragma once

#include <functional>
#include <future>
#include <optional>
#include <span>

#include "agent/hearing/phrase_finder.h"
#include "agent/hearing/recogniser.h"

namespace agent {

/// Recognises the first phrase of a stream of sound. Begins while the pause behind the phrase is still waited
/// out, so that the answer is there when the phrase has ended for certain.
class PhraseReader {
public:
    using Recognise = std::function<std::optional<HeardPhrase>(const Samples& phrase)>;

    /// `recognise` is called in other threads, never in two at once; the last call may still run when this
    /// object is destroyed, which then waits for it.
    explicit PhraseReader(Recognise recognise) : recognise_(std::move(recognise)) {}

    /// Takes more of the stream. True: the phrase has ended, and the stream is to be read no further.
    bool feed(std::span<const std::int16_t> samples);

    /// The speaker has said it all. True: there is a phrase.
    bool finish();

    bool speaking() const { return finder_.speaking(); }

    /// What the phrase that has ended was taken for.
    std::optional<HeardPhrase> result();

private:
    void beginEarly();

    Recognise recognise_;
    PhraseFinder finder_;
    std::optional<Samples> ended_;
    std::future<std::optional<HeardPhrase>> early_;
    bool outdated_ = false;  ///< speech has gone on since `early_` began
};

}  // namespace agent
