#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace velmora {

/// The lines of text files, counted from 1, without their line ends. The text is held as it came, with a mark
/// at every 64th line, so that a file of nothing but line ends costs little more than its size.
class LineList {
public:
    /// Appends the lines of the text, each ended by CR, LF or CRLF; the last may lack its line end.
    void add(std::string text);

    std::size_t Count() const { return count_; }

    /// A copy of the line. Fails with 5 for a number that there is no line of.
    std::string Item(std::size_t number) const;

private:
    std::string text_;
    std::vector<std::size_t> marks_;  ///< where the lines 1, 65, 129, ... begin
    std::size_t count_ = 0;
};

}  // namespace velmora
