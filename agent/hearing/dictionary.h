#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "agent/hearing/phones.h"

namespace agent {

/// Sounds out a word that no dictionary has. May give nothing.
using SoundOut = std::function<Phones(std::string_view word)>;

/// How words are pronounced.
class Dictionary {
public:
    /// From the file's lines "WORD PHONE PHONE ...", a second pronunciation as "WORD(2)". Nothing if the file
    /// can't be read.
    static std::optional<Dictionary> read(const std::string& path);

    /// At most three, the commonest first; none for an unknown word. Words are in lower case.
    std::vector<Phones> pronunciations(std::string_view word) const;

    /// The words that are said like that, for each of the sounds (as `phoneText` writes them) that there are
    /// any for.
    std::map<std::string, std::vector<std::string>> wordsSaidAs(const std::set<std::string>& sounds) const;

private:
    std::string text_;
    std::vector<std::pair<std::size_t, std::size_t>> lines_;  ///< begin and length of the word, in its order

    std::string_view wordAt(const std::pair<std::size_t, std::size_t>& line) const;
    std::string_view soundsAt(const std::pair<std::size_t, std::size_t>& line) const;
};

}  // namespace agent
