#include "agent/keyword_index.h"

#include <algorithm>

namespace agent {
namespace {

constexpr std::size_t longest = 24;  // bytes: bounds the time that a text takes

}  // namespace

std::uint64_t KeywordIndex::step(std::size_t node, char byte) {
    return static_cast<std::uint64_t>(node) << 8 | static_cast<unsigned char>(byte);
}

void KeywordIndex::add(std::string_view word, std::size_t entry) {
    std::size_t node = 0;
    for (const char byte : word.substr(0, longest)) {
        const auto [found, isNew] = next_.try_emplace(step(node, byte), entries_.size());
        if (isNew) entries_.emplace_back();
        node = found->second;
    }
    auto& entries = entries_[node];
    if (entries.empty() || entries.back() != entry) entries.push_back(entry);
}

std::vector<std::size_t> KeywordIndex::find(std::string_view text) const {
    std::vector<bool> seen(entries_.size());
    std::vector<std::size_t> all;
    for (std::size_t begin = 0; begin < text.size(); ++begin) {
        std::size_t node = 0;
        for (const char byte : text.substr(begin, longest)) {
            const auto found = next_.find(step(node, byte));
            if (found == next_.end()) break;
            node = found->second;
            if (!seen[node]) all.insert(all.end(), entries_[node].begin(), entries_[node].end());
            seen[node] = true;
        }
    }
    std::ranges::sort(all);
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

}  // namespace agent
