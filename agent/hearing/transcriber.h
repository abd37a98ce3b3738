#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "agent/hearing/writing_graph.h"
#include "agent/hearing/writing_model.h"

namespace agent {

/// A phrase as it may be written down.
struct Transcript {
    /// As a command; the likeliest way to write it down.
    struct Command {
        std::size_t command;
        std::string words;
        double logLikelihood;
    };
    std::string text;               ///< whatever was said, with its punctuation; may be empty
    double logLikelihood = 0;       ///< of the text
    std::vector<Command> commands;  ///< the likeliest first
};

/// Writes down what was said, freely and as each of the commands. Used by one thread at a time.
class Transcriber {
public:
    Transcriber(std::unique_ptr<WritingModel> model, Tokens tokens, const std::vector<CommandGraph>& commands)
        : model_(std::move(model)), tokens_(std::move(tokens)), graph_(commands, tokens_) {}

    /// From the folder of a `WritingModel`, with its tokens in "tokens.txt". Nothing if either is missing.
    static std::unique_ptr<Transcriber> load(const std::string& folder,
                                             const std::vector<CommandGraph>& commands);

    /// One channel at 16000 samples a second. Ends early, with whatever it has, when it is stopped. Throws
    /// std::exception if the model fails.
    Transcript transcribe(std::span<const std::int16_t> samples, const std::stop_token& stop = {});

    /// How the phrase that was transcribed last may be written down as this command. Nothing if it is
    /// hopeless.
    std::optional<Transcript::Command> asCommand(std::size_t command);

private:
    struct Hypothesis;
    class Search;

    /// Follows texts from where they begin, and from the model's first answer.
    Transcript follow(std::vector<Hypothesis> begin, const NextTokens& first, const std::stop_token& stop);

    std::unique_ptr<WritingModel> model_;
    Tokens tokens_;
    WritingGraph graph_;
    // Of the phrase that was transcribed last:
    int mostSteps_ = 0;  ///< tokens in a text
    double freely_ = 0;  ///< likelihood of what was written freely
};

}  // namespace agent
