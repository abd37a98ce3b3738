#pragma once

#include <functional>
#include <future>
#include <optional>
#include <span>
#include <stop_token>

#include "agent/hearing/phrase_finder.h"
#include "agent/hearing/recogniser.h"

namespace agent {

/// Recognises the first phrase of a stream of sound. Reads it while it is being said, and recognises it as
/// soon as the speaker pauses; if what was said up to there is clearly a command, it doesn't wait for the end
/// of the pause.
class PhraseReader {
public:
    using Recognise =
        std::function<std::optional<HeardPhrase>(const Samples& phrase, const std::stop_token& stop)>;

    /// Reads what has been said up to now.
    using ReadAhead = std::function<void(const Samples& beginning, const std::stop_token& stop)>;

    /// Both are called in other threads, neither in two at once. `readAhead` is stopped when the speaker
    /// pauses, but `recognise` does not wait for its end; `recognise` when the speaker goes on.
    explicit PhraseReader(Recognise recognise, ReadAhead readAhead = {})
        : recognise_(std::move(recognise)), readAhead_(std::move(readAhead)) {}
    ~PhraseReader();
    PhraseReader(const PhraseReader&) = delete;
    PhraseReader& operator=(const PhraseReader&) = delete;

    /// Takes more of the stream. True: the phrase has ended, or a command was understood in a pause; the
    /// stream is to be read no further.
    bool feed(std::span<const std::int16_t> samples);

    /// The speaker has said it all. True: there is a phrase.
    bool finish();

    bool speaking() const { return finder_.speaking(); }

    /// What the phrase that has ended was taken for.
    std::optional<HeardPhrase> result();

private:
    void beginEarly();
    void beginAhead();
    bool isUnderstood();

    Recognise recognise_;
    ReadAhead readAhead_;
    PhraseFinder finder_;
    std::optional<Samples> ended_;
    std::future<std::optional<HeardPhrase>> early_;
    std::stop_source stop_;  ///< of `early_`; stopped: speech has gone on since it began
    std::optional<std::optional<HeardPhrase>> answer_;  ///< what `early_` gave
    std::future<void> ahead_;
    std::stop_source stopAhead_;
    std::size_t readUpTo_ = 0;  ///< samples of the phrase that `ahead_` has been given
};

}  // namespace agent
