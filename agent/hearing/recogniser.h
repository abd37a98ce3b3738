#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "agent/hearing/command_graph.h"
#include "agent/hearing/decoder.h"
#include "agent/hearing/judge.h"
#include "agent/voice_vocabulary.h"

namespace agent {

/// What a phrase that was spoken was taken for.
struct HeardPhrase {
    std::string words;                   ///< as they were heard
    std::optional<std::size_t> command;  ///< the likeliest, an index into the grammars; none: it fits none
    int score = 0;                       ///< -100 to 100; -60 or less: it was most likely no command
    std::vector<std::size_t> runnersUp;  ///< at most two other commands, the likelier first
};

/// Tells which of many commands a phrase is, and how sure that is. Used by one thread at a time.
class Recogniser {
public:
    /// Nothing if the model can't be read, or if there is no grammar that can be heard.
    static std::unique_ptr<Recogniser> load(const HearingModel& model,
                                            const std::vector<std::string>& grammars,
                                            const SoundOut& soundOut);

    /// The samples are one phrase, at 16000 a second, with a little of the room before and after it. Nothing
    /// if there is not a word in them.
    std::optional<HeardPhrase> recognise(std::span<const std::int16_t> samples);

    /// The phrase as a command, as any words and as any sounds; for those who study it. The command's reading
    /// holds no word if there is none to be heard, and then the others are empty.
    Readings read(std::span<const std::int16_t> samples);

    /// What may be said for each of the grammars.
    const std::vector<CommandGraph>& graphs() const { return graphs_; }

private:
    Recogniser(const std::vector<std::string>& grammars, std::vector<CommandGraph> graphs,
               std::unique_ptr<Decoder> decoder);

    VoiceVocabulary vocabulary_;
    std::vector<CommandGraph> graphs_;
    std::unique_ptr<Decoder> decoder_;
};

}  // namespace agent
