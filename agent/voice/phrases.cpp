#include "agent/voice/phrases.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "agent/bytes.h"

namespace agent {
namespace {

constexpr std::size_t longestPhrase = 50;
constexpr std::size_t shortSentence = 4;  // "Hi. I am here." is said in one go

struct Reading {
    std::string_view written;
    std::string_view read;
};

constexpr std::array eMailSymbols = {Reading{"@", "at"},   Reading{".", "dot"},   Reading{"_", "underscore"},
                                     Reading{"-", "dash"}, Reading{"/", "slash"}, Reading{"+", "plus"}};

constexpr std::array addressWords = {
    Reading{"St", "Street"},      Reading{"Ave", "Avenue"},   Reading{"Rd", "Road"},
    Reading{"Blvd", "Boulevard"}, Reading{"Dr", "Drive"},     Reading{"Ln", "Lane"},
    Reading{"Ct", "Court"},       Reading{"Pl", "Place"},     Reading{"Sq", "Square"},
    Reading{"Hwy", "Highway"},    Reading{"Pkwy", "Parkway"}, Reading{"Apt", "Apartment"},
    Reading{"Ste", "Suite"},      Reading{"N", "North"},      Reading{"S", "South"},
    Reading{"E", "East"},         Reading{"W", "West"},       Reading{"NE", "Northeast"},
    Reading{"NW", "Northwest"},   Reading{"SE", "Southeast"}, Reading{"SW", "Southwest"},
    Reading{"Tel", "Telephone"},  Reading{"#", "number"}};

// Words before which a group of words ends.
constexpr std::array<std::string_view, 22> connectives = {
    "and", "or", "but", "that", "which", "who", "when", "while", "if",   "because", "to",
    "of",  "in", "on",  "at",   "for",   "by",  "with", "from",  "into", "as",      "about"};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isWordCharacter(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           static_cast<unsigned char>(c) > 0x7f;
}

bool endsWithOneOf(const SpokenWord& word, std::string_view characters) {
    return !word.spoken.empty() && characters.find(word.spoken.back()) != std::string_view::npos;
}

bool isConnective(const SpokenWord& word) {
    return std::ranges::any_of(connectives, [&](auto known) { return sameName(known, word.spoken); });
}

// How many words, at least one, are said with so many letters.
std::size_t countWithin(std::span<const SpokenWord> words, std::size_t limit) {
    std::size_t letters = 0;
    for (std::size_t count = 0; count < words.size(); ++count) {
        letters += lettersToSay(words[count]);
        if (letters > limit) return std::max<std::size_t>(count, 1);
    }
    return words.size();
}

// The end of a group of words among the first `limit`, of which there are more.
std::size_t groupLength(std::span<const SpokenWord> words, std::size_t limit) {
    for (std::size_t count = limit; count * 2 >= limit && count > 0; --count) {
        if (endsWithOneOf(words[count - 1], ",;:") || isConnective(words[count])) return count;
    }
    return limit;
}

std::string readEMail(std::string_view word) {
    std::string read;
    for (std::size_t i = 0; i < word.size(); ++i) {
        const auto symbol = std::ranges::find(eMailSymbols, word.substr(i, 1), &Reading::written);
        const bool inside = i + 1 < word.size() && isWordCharacter(word[i + 1]);
        if (symbol == eMailSymbols.end() || !inside) {
            read += word[i];
        } else {
            read.append(" ").append(symbol->read).append(" ");
        }
    }
    return read;
}

// Numbers of streets are said whole; those of telephones and towns digit by digit.
bool isDialled(std::string_view word) {
    constexpr std::ptrdiff_t dialled = 5;
    return std::ranges::count_if(word, isDigit) >= dialled && std::ranges::all_of(word, [](char c) {
               return isDigit(c) || std::string_view("+-().,").find(c) != std::string_view::npos;
           });
}

std::string readAddress(std::string_view word) {
    const auto end = word.find_last_not_of(".,;:") + 1;
    const auto stem = word.substr(0, end);
    const auto known = std::ranges::find_if(addressWords, [&](auto& w) { return sameName(w.written, stem); });
    // The dot belongs to the abbreviation, other marks to the sentence.
    if (known != addressWords.end()) {
        const auto rest = word.substr(end);
        return std::string(known->read).append(rest.starts_with('.') ? rest.substr(1) : rest);
    }
    if (!isDialled(word)) return std::string(word);
    std::string read;
    for (const char c : word) {
        if (isDigit(c)) {
            read.append(1, c).append(" ");
        } else if (c == '-' || c == ')' || c == ',') {
            read += ", ";
        }
    }
    return read;
}

}  // namespace

bool endsSentence(const SpokenWord& word) {
    return endsWithOneOf(word, ".!?");
}

std::size_t phraseLength(std::span<const SpokenWord> words, std::size_t limit) {
    std::size_t most = std::min(words.size(), longestPhrase);
    for (std::size_t i = 1; i < most; ++i) {
        if (words[i].delivery != words[0].delivery || words[i].pause.count() != 0) most = i;
    }
    for (std::size_t count = shortSentence; count < most; ++count) {
        if (endsSentence(words[count - 1])) most = count;
    }
    const std::size_t within = countWithin(words.first(most), limit);
    return within < most ? groupLength(words, within) : most;
}

std::size_t lettersToSay(const SpokenWord& word) {
    constexpr std::size_t digit = 6;
    constexpr std::size_t sign = 3;
    constexpr std::string_view silent = "'\"-()";
    const std::string_view text = word.spoken;
    std::size_t letters = 1;
    for (const char c : text.substr(0, text.find_last_not_of(".,;:!?") + 1)) {
        const bool plain = isWordCharacter(c) || silent.find(c) != std::string_view::npos;
        letters += isDigit(c) ? digit : plain ? 1 : sign;
    }
    return letters;
}

std::string readAloud(std::string_view word, Delivery::Context context) {
    switch (context) {
        case Delivery::Context::eMail:
            return readEMail(word);
        case Delivery::Context::address:
            return readAddress(word);
        case Delivery::Context::unknown:
            break;
    }
    return std::string(word);
}

}  // namespace agent
