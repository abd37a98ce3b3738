#include "agent/voice/ssml.h"

#include <string_view>

#include "agent/bytes.h"

namespace agent {
namespace {

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

}  // namespace

std::string toSsml(std::span<const SpokenWord> words, std::size_t first) {
    std::string document = "<speak>";
    for (const auto& word : words) {
        document += "<mark name=\"" + std::to_string(first++) + "\"/>";
        if (word.stressed) document += "<emphasis level=\"strong\">";
        appendEscaped(document, word.spoken);
        if (word.stressed) document += "</emphasis>";
        document += ' ';
    }
    return document + "</speak>";
}

}  // namespace agent
