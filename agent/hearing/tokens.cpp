#include "agent/hearing/tokens.h"

#include <fstream>
#include <limits>
#include <utility>

namespace agent {
namespace {

constexpr Token firstByte = 3;  // the 256 bytes, for what no piece covers
constexpr Token firstPiece = firstByte + 256;

/// The bytes of the UTF-8 character that the text begins with; one where it is malformed.
std::size_t characterLength(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) ++length;
    return length;
}

}  // namespace

std::optional<Tokens> Tokens::read(const std::string& path) {
    constexpr std::size_t most = 100'000;
    std::ifstream file(path, std::ios::binary);
    Tokens tokens;
    for (std::string piece; tokens.pieces_.size() < most && std::getline(file, piece);) {
        tokens.byPiece_.emplace(piece, static_cast<Token>(tokens.pieces_.size()));
        tokens.pieces_.push_back(std::move(piece));
    }
    if (tokens.pieces_.size() <= firstPiece) return {};
    return tokens;
}

std::optional<Token> Tokens::tokenOf(const std::string& piece) const {
    const auto found = byPiece_.find(piece);
    if (found == byPiece_.end() || found->second < firstPiece) return {};
    return found->second;
}

TokenList Tokens::split(std::string_view text) const {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        parts.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    // What the model learned earlier has the lower number.
    while (true) {
        std::pair<Token, std::size_t> best{std::numeric_limits<Token>::max(), 0};
        for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
            if (const auto token = tokenOf(parts[i] + parts[i + 1])) best = std::min(best, {*token, i});
        }
        if (best.first == std::numeric_limits<Token>::max()) break;
        parts[best.second] += parts[best.second + 1];
        parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(best.second) + 1);
    }
    TokenList tokens;
    for (const std::string& part : parts) {
        if (const auto token = tokenOf(part)) {
            tokens.push_back(*token);
        } else {
            for (const char byte : part) tokens.push_back(firstByte + static_cast<unsigned char>(byte));
        }
    }
    return tokens;
}

std::string Tokens::text(const TokenList& tokens) const {
    std::string text;
    for (const Token token : tokens) {
        if (token < firstByte || static_cast<std::size_t>(token) >= pieces_.size()) continue;
        if (token < firstPiece) {
            text.push_back(static_cast<char>(token - firstByte));
        } else {
            text.append(pieces_[static_cast<std::size_t>(token)]);
        }
    }
    for (auto at = text.find(wordMark); at != std::string::npos; at = text.find(wordMark, at))
        text.replace(at, wordMark.size(), " ");
    return text.starts_with(' ') ? text.substr(1) : text;
}

}  // namespace agent
