#include "agent/bytes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace agent {
namespace {

// The code points of bytes 0x80 to 0x9f; the five that Windows-1252 leaves open stand for themselves.
constexpr std::array<std::uint16_t, 32> windows1252 = {
    0x20ac, 0x0081, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008d, 0x017d, 0x008f, 0x0090, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x009d, 0x017e, 0x0178};

/// Capitals and how far behind them their small letters come.
struct Capitals {
    std::uint32_t first;
    std::uint32_t last;
    std::uint32_t every;  // 2: capital and small letter by turns
    std::uint32_t distance;
};

// Those that take at most two bytes of UTF-8, as their small letters do.
constexpr std::array capitals{
    Capitals{'A', 'Z', 1, 32},     Capitals{0xc0, 0xd6, 1, 32},   Capitals{0xd8, 0xde, 1, 32},
    Capitals{0x100, 0x12e, 2, 1},  Capitals{0x132, 0x136, 2, 1},  Capitals{0x139, 0x147, 2, 1},
    Capitals{0x14a, 0x176, 2, 1},  Capitals{0x179, 0x17d, 2, 1},  Capitals{0x391, 0x3a9, 1, 32},
    Capitals{0x400, 0x40f, 1, 80}, Capitals{0x410, 0x42f, 1, 32},
};

std::uint32_t smallLetter(std::uint32_t point) {
    const auto* found = std::ranges::find_if(capitals, [point](const Capitals& row) {
        return point >= row.first && point <= row.last && (point - row.first) % row.every == 0;
    });
    return found == capitals.end() ? point : point + found->distance;
}

void append(std::string& text, std::uint32_t point) {
    if (point < 0x80) {
        text += static_cast<char>(point);
    } else if (point < 0x800) {
        text += static_cast<char>(0xc0 | (point >> 6));
        text += static_cast<char>(0x80 | (point & 0x3f));
    } else {
        text += static_cast<char>(0xe0 | (point >> 12));
        text += static_cast<char>(0x80 | ((point >> 6) & 0x3f));
        text += static_cast<char>(0x80 | (point & 0x3f));
    }
}

// The length of the valid sequence at the start of `text`, 0 if there is none.
std::size_t sequenceLength(std::string_view text) {
    const auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = at(0);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    if (lead < 0xc2 || lead > 0xf4 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xc0) != 0x80) return 0;
    }
    const unsigned second = at(1);
    const bool overlong = (lead == 0xe0 && second < 0xa0) || (lead == 0xf0 && second < 0x90);
    const bool outside = (lead == 0xed && second > 0x9f) || (lead == 0xf4 && second > 0x8f);
    return overlong || outside ? 0 : length;
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

bool isUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes);
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

std::string fromWindows1252(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        append(text, byte >= 0x80 && byte < 0xa0 ? windows1252[byte - 0x80U] : byte);
    }
    return text;
}

std::string toUtf8(std::string_view bytes) {
    return isUtf8(bytes) ? std::string(bytes) : fromWindows1252(bytes);
}

std::string lowerCase(std::string_view bytes) {
    const std::string text = toUtf8(bytes);
    std::string lowered;
    lowered.reserve(text.size());
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t length = sequenceLength(rest);
        const auto at = [rest](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
        if (length > 2) {
            lowered += rest.substr(0, length);
        } else {
            append(lowered, smallLetter(length == 1 ? at(0) : (at(0) & 0x1fU) << 6 | (at(1) & 0x3fU)));
        }
        rest.remove_prefix(length);
    }
    return lowered;
}

bool sameName(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, lower, lower);
}

}  // namespace agent
