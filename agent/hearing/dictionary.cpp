#include "agent/hearing/dictionary.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace agent {

std::optional<Dictionary> Dictionary::read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return {};
    Dictionary dictionary;
    dictionary.text_.assign(std::istreambuf_iterator<char>(file), {});
    const std::string_view text = dictionary.text_;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::size_t blank = text.find(' ', begin);
        if (blank < end) dictionary.lines_.emplace_back(begin, blank - begin);
        begin = end + 1;
    }
    std::ranges::sort(dictionary.lines_, {}, [&](const auto& line) { return dictionary.wordAt(line); });
    return dictionary;
}

std::string_view Dictionary::wordAt(const std::pair<std::size_t, std::size_t>& line) const {
    return std::string_view(text_).substr(line.first, line.second);
}

std::vector<Phones> Dictionary::pronunciations(std::string_view word) const {
    std::vector<Phones> all;
    for (const std::string_view suffix : {"", "(2)", "(3)"}) {
        const std::string entry = std::string(word).append(suffix);
        const auto found =
            std::ranges::lower_bound(lines_, entry, {}, [this](const auto& line) { return wordAt(line); });
        if (found == lines_.end() || wordAt(*found) != entry) break;
        const std::string_view rest = std::string_view(text_).substr(found->first + found->second + 1);
        const Phones phones = readPhones(rest.substr(0, rest.find('\n')));
        if (!phones.empty()) all.push_back(phones);
    }
    return all;
}

}  // namespace agent
