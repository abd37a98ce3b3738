#pragma once

#include <optional>
#include <string>

namespace velmora {

/// Where the terminal host's lines come from.
class LineInput {
public:
    virtual ~LineInput() = default;

    /// The next line, without its line end, if a whole one has arrived (at the end of input, what is left
    /// counts as one). Otherwise the arrival of more wakes the loop.
    virtual std::optional<std::string> next() = 0;

    /// Whether the input is over and every line of it has been taken.
    virtual bool ended() const = 0;
};

}  // namespace velmora
