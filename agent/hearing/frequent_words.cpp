#include "agent/hearing/frequent_words.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace agent {
namespace {

constexpr std::size_t howMany = 3000;

// Beginnings, so that all forms are covered.
constexpr std::array<std::string_view, 10> unwelcome{"fuck", "shit",  "bitch",  "cunt",  "asshole",
                                                     "dick", "pussy", "nigger", "faggo", "whore"};

bool isWord(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return (c >= 'a' && c <= 'z') || c == '\''; });
}

bool isWelcome(std::string_view word) {
    return std::ranges::none_of(unwelcome,
                                [word](std::string_view beginning) { return word.starts_with(beginning); });
}

}  // namespace

std::vector<std::string> frequentWords(std::vector<std::pair<int, std::string>> ranked) {
    std::ranges::sort(ranked);
    std::vector<std::string> words;
    for (auto& [rank, word] : ranked) {
        if (words.size() == howMany) break;
        if (isWord(word) && isWelcome(word)) words.push_back(std::move(word));
    }
    return words;
}

}  // namespace agent
