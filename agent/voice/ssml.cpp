#include "agent/voice/ssml.h"

#include <algorithm>
#include <string_view>

#include "agent/bytes.h"

namespace agent {
namespace {

constexpr std::size_t longSentence = 50;
constexpr std::size_t shortSentence = 4;  // "Hi. I am here." is said in one go

// Longer than any word: what a person can't say, the synthesiser need not spell out for minutes.
constexpr std::size_t longestWord = 400;

void appendEscaped(std::string& document, std::string_view word) {
    for (const char c : toUtf8(word.substr(0, longestWord))) {
        switch (c) {
            case '<':
                document += "&lt;";
                break;
            case '>':
                document += "&gt;";
                break;
            case '&':
                document += "&amp;";
                break;
            default:
                if (static_cast<unsigned char>(c) >= ' ' && c != 0x7f) document += c;
        }
    }
}

bool endsSentence(const SpokenWord& word) {
    return !word.spoken.empty() && std::string_view(".!?").find(word.spoken.back()) != std::string_view::npos;
}

}  // namespace

std::string toSsml(std::span<const SpokenWord> words, std::size_t first) {
    std::string document = "<speak>";
    for (const auto& word : words) {
        document += "<mark name=\"" + std::to_string(first++) + "\"/>";
        appendEscaped(document, word.spoken);
        document += ' ';
    }
    return document + "</speak>";
}

std::size_t sentenceLength(std::span<const SpokenWord> words) {
    const std::size_t most = std::min(words.size(), longSentence);
    for (std::size_t count = shortSentence; count < most; ++count) {
        if (endsSentence(words[count - 1])) return count;
    }
    return most;
}

}  // namespace agent
