#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace agent {

/// Finds which of many words a text holds, in a time that does not grow with how many there are.
class KeywordIndex {
public:
    /// Files `entry` under the word. Of a very long word only its beginning is looked at.
    void add(std::string_view word, std::size_t entry);

    /// The entries whose word occurs in the text, anywhere: in ascending order, each once.
    std::vector<std::size_t> find(std::string_view text) const;

private:
    static std::uint64_t step(std::size_t node, char byte);

    // A tree of bytes; node 0 is its root.
    std::unordered_map<std::uint64_t, std::size_t> next_;
    std::vector<std::vector<std::size_t>> entries_{1};
};

}  // namespace agent
