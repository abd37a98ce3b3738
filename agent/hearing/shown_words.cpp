#include "agent/hearing/shown_words.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "agent/voice_form.h"

namespace agent {
namespace {

// Beginnings, so that all forms are covered.
constexpr std::array<std::string_view, 10> unwelcome{"fuck", "shit",  "bitch",  "cunt",  "asshole",
                                                     "dick", "pussy", "nigger", "faggo", "whore"};

bool isWelcome(std::string_view word) {
    return std::ranges::none_of(unwelcome,
                                [word](std::string_view beginning) { return word.starts_with(beginning); });
}

bool isPunctuation(char sign) {
    return std::string_view(".,;:!?\"()[]{}").find(sign) != std::string_view::npos;
}

}  // namespace

std::string shownWords(std::string_view transcript) {
    std::string text(transcript);
    std::erase_if(text, isPunctuation);
    std::istringstream words(spokenPhrase(text));
    std::string shown;
    for (std::string word; words >> word;) {
        if (isWelcome(word)) shown.append(shown.empty() ? "" : " ").append(word);
    }
    return shown;
}

}  // namespace agent
