#include "agent/voice/plain_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "agent/bytes.h"

namespace agent {
namespace {

constexpr std::size_t longestText = 400;

// From U+00C0 to U+00FF.
constexpr std::string_view withoutAccents =
    "AAAAAAACEEEEIIIIDNOOOOOxOUUUUYTsaaaaaaaceeeeiiiidnooooo/ouuuuyty";

struct Sign {
    char32_t sign;
    std::string_view text;
};
constexpr std::array<Sign, 9> signs = {{{0x2018, "'"},
                                        {0x2019, "'"},
                                        {0x201c, "\""},
                                        {0x201d, "\""},
                                        {0x2013, "-"},
                                        {0x2014, " - "},
                                        {0x2026, "..."},
                                        {0x20ac, " euro "},
                                        {0xa3, " pound "}}};

// The character at the start of UTF-8 text, which is moved behind it.
char32_t takeCharacter(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text.front());
    std::size_t length = 1;
    if (first >= 0xf0) {
        length = 4;
    } else if (first >= 0xe0) {
        length = 3;
    } else if (first >= 0xc0) {
        length = 2;
    }
    char32_t character = length == 1 ? first : first & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i)
        character = character << 6 | (static_cast<unsigned char>(text.at(i)) & 0x3fU);
    text.remove_prefix(length);
    return character;
}

}  // namespace

std::string toPlainText(std::string_view word) {
    const std::string utf8 = toUtf8(word.substr(0, longestText));
    std::string plain;
    for (std::string_view rest = utf8; !rest.empty();) {
        const char32_t character = takeCharacter(rest);
        if (character >= ' ' && character < 0x7f) {
            plain += static_cast<char>(character);
            continue;
        }
        std::string_view text = " ";
        if (character >= 0xc0 && character <= 0xff) text = withoutAccents.substr(character - 0xc0, 1);
        for (const Sign& sign : signs) {
            if (sign.sign == character) text = sign.text;
        }
        plain += text;
    }
    plain.resize(std::min(plain.size(), longestText));
    return plain;
}

}  // namespace agent
