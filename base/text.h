#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace velmora {

/// Whether the character is a blank inside a line: a space or a tab.
constexpr bool isBlank(char character) {
    return character == ' ' || character == '\t';
}

/// The letters A to Z in lower case; every other byte as it is.
constexpr char lowered(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

/// The text without the blanks at both ends.
std::string_view trim(std::string_view text);

/// Whether the texts differ at most in the case of the letters A to Z.
bool equalsIgnoringCase(std::string_view one, std::string_view other);

/// Whether the text ends with `ending`, letters A to Z of either case.
bool endsWithIgnoringCase(std::string_view text, std::string_view ending);

/// One line of a longer text, as offsets into it.
struct LineSpan {
    std::size_t begin;
    std::size_t end;   ///< behind the last character of the line, before its line end
    std::size_t next;  ///< where the next line begins; equal to `end` for a last line without a line end
};

/// Walks over the lines of a text, each ended by CR, LF or CRLF; the last may lack its line end, and nothing
/// follows a last line end. Costs one pass over the text, whichever line ends it has. The text must outlive
/// the walk.
class LineWalk {
public:
    explicit LineWalk(std::string_view text, std::size_t begin = 0);

    /// The next line, or nothing at the end of the text.
    std::optional<LineSpan> next();

private:
    std::string_view text_;
    std::size_t position_;
    // Where the next of each line end was found last. A text with only one kind would be searched to its end
    // for the other at every line, were these not kept.
    std::size_t lineFeed_;
    std::size_t carriageReturn_;
};

/// The lines of the text, as `LineWalk` finds them.
std::vector<std::string_view> splitLines(std::string_view text);

}  // namespace velmora
