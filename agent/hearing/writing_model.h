#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "agent/hearing/tokens.h"

namespace agent {

/// What may come next in each of several texts: for every token a number that is the greater the likelier it
/// is, the logarithm of its likelihood but for what is the same for all tokens of a row.
struct NextTokens {
    std::vector<float> values;  ///< row after row
    std::size_t width = 0;      ///< of a row: the number of tokens

    std::span<const float> row(std::size_t row) const {
        return std::span(values).subspan(row * width, width);
    }
};

/// Hears speech and tells, token by token, what may be written down for it. Used by one thread at a time.
class WritingModel {
public:
    /// From a folder with the model's files and the library that runs it. Nothing if either can't be loaded.
    static std::unique_ptr<WritingModel> load(const std::string& folder);
    virtual ~WritingModel() = default;

    /// Hears one channel at 16000 samples a second, -1 to 1; what was heard before is forgotten. Returns one
    /// row: how a text may begin. Throws std::exception if the model fails.
    virtual NextTokens hear(std::span<const float> samples) = 0;

    /// The same answer once more: other texts for what was heard last.
    virtual NextTokens again() = 0;

    /// A text that goes on from a row of the answer before.
    struct Text {
        std::size_t row;
        Token token;

        bool operator==(const Text&) const = default;
    };
    /// A row for each of the texts, at most `mostTexts`. Throws std::exception if the model fails.
    virtual NextTokens goOn(std::span<const Text> texts) = 0;

    static constexpr std::size_t mostTexts = 9;
};

}  // namespace agent
