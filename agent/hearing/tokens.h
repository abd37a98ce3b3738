#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace agent {

using Token = int;
using TokenList = std::vector<Token>;

/// The pieces of writing in which the transcriber's model thinks: a word, or a part of one. One that begins a
/// word begins with `wordMark` instead of a blank.
class Tokens {
public:
    static constexpr Token begin = 1;  ///< of every text
    static constexpr Token end = 2;
    static constexpr std::string_view wordMark = "\u2581";

    /// From a file with a piece on each line, the first one being token 0. Nothing if it can't be read.
    static std::optional<Tokens> read(const std::string& path);

    /// The tokens of a text in which blanks are written as `wordMark`, put together in the order in which the
    /// model learned them.
    TokenList split(std::string_view text) const;

    /// The text of tokens, in UTF-8 with blanks between words.
    std::string text(const TokenList& tokens) const;

private:
    std::optional<Token> tokenOf(const std::string& piece) const;

    std::vector<std::string> pieces_;
    std::unordered_map<std::string, Token> byPiece_;
};

}  // namespace agent
