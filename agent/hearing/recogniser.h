#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "agent/hearing/command_graph.h"
#include "agent/hearing/decoder.h"
#include "agent/hearing/judge.h"
#include "agent/hearing/transcriber.h"
#include "agent/voice_vocabulary.h"

namespace agent {

/// What a phrase that was spoken was taken for.
struct HeardPhrase {
    std::string words;                   ///< as they were heard
    std::optional<std::size_t> command;  ///< the likeliest, an index into the grammars; none: it fits none
    int score = 0;                       ///< -100 to 100; `noCommandScore` or less: it was most likely none
    std::vector<std::size_t> runnersUp;  ///< at most two other commands, the likelier first
    bool mayGoOn = false;                ///< another command begins with these words
};

/// Tells which of many commands a phrase is, and how sure that is. Used by one thread at a time, but for
/// `readAhead`.
class Recogniser {
public:
    /// Nothing if the model can't be read, or if there is no grammar that can be heard.
    static std::unique_ptr<Recogniser> load(const HearingModel& model,
                                            const std::vector<std::string>& grammars,
                                            const SoundOut& soundOut);

    /// Reads what has been said of a phrase up to now, so that the whole of it is recognised the sooner.
    /// May be called while another thread recognises.
    void readAhead(std::span<const std::int16_t> beginning, const std::stop_token& stop);

    /// The samples are one phrase, at 16000 a second, with a little of the room before and after it. Nothing
    /// if there is not a word in them, or if it is stopped.
    std::optional<HeardPhrase> recognise(std::span<const std::int16_t> samples,
                                         const std::stop_token& stop = {});

    /// The phrase as a command, as any sounds and as a text; for those who study it.
    Readings read(std::span<const std::int16_t> samples, const std::stop_token& stop = {});

    /// Adds what the phrase is when it is played more slowly, which helps with quick and with high voices.
    void readSlower(std::span<const std::int16_t> samples, Readings& readings,
                    const std::stop_token& stop = {});

    /// What may be said for each of the grammars.
    const std::vector<CommandGraph>& graphs() const { return graphs_; }

private:
    Recogniser(const std::vector<std::string>& grammars, std::vector<CommandGraph> graphs, Decoders decoders,
               std::unique_ptr<Transcriber> transcriber);

    /// Has the transcriber look for a command that it has not thought of. Without a transcript if it fails.
    void addCommand(std::optional<Transcript>& transcript, const Reading& reading,
                    const std::stop_token& stop);

    VoiceVocabulary vocabulary_;
    std::vector<CommandGraph> graphs_;
    std::mutex decoding_;
    Decoders decoders_;                         ///< for whoever holds `decoding_`
    std::unique_ptr<Transcriber> transcriber_;  ///< null without the model for it
};

}  // namespace agent
