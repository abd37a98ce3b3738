#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

/// How a word is said, where the tags before it ask for something else than the voice's own way.
struct Delivery {
    enum class Character : std::uint8_t { normal, monotone, whisper };
    enum class Context : std::uint8_t { unknown, address, eMail };

    static constexpr std::uint16_t fullVolume = 65535;

    std::optional<std::uint16_t> pitch;  ///< hertz, 40 to 400
    std::optional<std::uint16_t> rate;   ///< words a minute, 80 to 450
    std::uint16_t volume = fullVolume;   ///< 0 is silence
    Character character = Character::normal;
    Context context = Context::unknown;  ///< how symbols and abbreviations are read

    bool operator==(const Delivery&) const = default;
};

/// A word of a line: what is said, and how far the shown text reaches once it is said.
struct SpokenWord {
    std::string spoken;        ///< bytes as they came; may be empty, or hold several words
    std::size_t shownEnd = 0;  ///< the line's `shown` is revealed up to this byte
    Delivery delivery = {};
    bool stressed = false;
    std::uint32_t bookmark = 0;          ///< number of the mark that is passed with this word, or 0
    std::chrono::milliseconds pause{0};  ///< silence before the word, a minute at most
};

/// A line ready to be said and shown.
struct SpokenLine {
    std::string shown;
    std::vector<SpokenWord> words;
};

/// One of the alternatives that `|` separates in `text`. `pick` is asked for an index below `count`, only if
/// there is a choice; an index outside counts from the beginning again.
std::string chooseAlternative(std::string_view text,
                              const std::function<std::size_t(std::size_t count)>& pick);

/// Takes the speech tags out of a line: `\Map="spoken"="shown"\` says its first text and shows its second,
/// `\\` is a backslash, the other tags are neither said nor shown and tell how the words behind them are
/// said. Numbers beyond what a voice can do count as the nearest that it can. What is not a tag is text.
/// Takes any bytes.
SpokenLine parseSpeech(std::string_view oneAlternative);

/// As `parseSpeech`, of the front of `rest`, which is moved behind it: about `most` bytes, up to the end of a
/// word, or twice as many of a word that does not end. Takes something unless `rest` is empty. `delivery` is
/// how the first word is said unless a tag tells; it becomes how the words behind the part are said.
SpokenLine takeSpeech(std::string_view& rest, std::size_t most, Delivery& delivery);

/// What `parseSpeech` shows.
std::string shownText(std::string_view oneAlternative);

/// Whether a line is nothing but `\Lst\`, which says the line before it again.
bool asksForLastLine(std::string_view oneAlternative);

}  // namespace agent
