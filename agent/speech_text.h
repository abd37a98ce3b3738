#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

/// A word of a line: what is said, and how far the shown text reaches once it is said.
struct SpokenWord {
    std::string spoken;        ///< bytes as they came; may be empty, or hold several words
    std::size_t shownEnd = 0;  ///< the line's `shown` is revealed up to this byte
};

/// A line ready to be said and shown. Effects of tags other than Map on the voice would be members of
/// `SpokenWord`.
struct SpokenLine {
    std::string shown;
    std::vector<SpokenWord> words;
};

/// One of the alternatives that `|` separates in `text`. `pick` is asked for an index below `count`, only if
/// there is a choice; an index outside counts from the beginning again.
std::string chooseAlternative(std::string_view text,
                              const std::function<std::size_t(std::size_t count)>& pick);

/// Takes the speech tags out of a line: `\Map="spoken"="shown"\` says its first text and shows its second,
/// `\\` is a backslash, the other tags are neither said nor shown. What is not a tag is text. Takes any
/// bytes.
SpokenLine parseSpeech(std::string_view oneAlternative);

/// As `parseSpeech`, of the front of `rest`, which is moved behind it: about `most` bytes, up to the end of a
/// word, or twice as many of a word that does not end. Takes something unless `rest` is empty.
SpokenLine takeSpeech(std::string_view& rest, std::size_t most);

/// What `parseSpeech` shows.
std::string shownText(std::string_view oneAlternative);

}  // namespace agent
