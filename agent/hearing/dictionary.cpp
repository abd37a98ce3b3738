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

std::string_view Dictionary::soundsAt(const std::pair<std::size_t, std::size_t>& line) const {
    const std::string_view rest = std::string_view(text_).substr(line.first + line.second + 1);
    return rest.substr(0, rest.find('\n'));
}

std::vector<Phones> Dictionary::pronunciations(std::string_view word) const {
    std::vector<Phones> all;
    for (const std::string_view suffix : {"", "(2)", "(3)"}) {
        const std::string entry = std::string(word).append(suffix);
        const auto found =
            std::ranges::lower_bound(lines_, entry, {}, [this](const auto& line) { return wordAt(line); });
        if (found == lines_.end() || wordAt(*found) != entry) break;
        const Phones phones = readPhones(soundsAt(*found));
        if (!phones.empty()) all.push_back(phones);
    }
    return all;
}

std::map<std::string, std::vector<std::string>> Dictionary::wordsSaidAs(
    const std::set<std::string>& sounds) const {
    std::map<std::string, std::vector<std::string>> found;
    for (const auto& line : lines_) {
        std::string said(soundsAt(line));
        if (!sounds.contains(said)) continue;
        const std::string_view word = wordAt(line);
        found[std::move(said)].emplace_back(word.substr(0, word.find('(')));
    }
    return found;
}

}  // namespace agent
