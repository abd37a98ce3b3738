#pragma once

#include <string>
#include <utility>
#include <vector>

namespace agent {

/// The words, in the order of rising rank, that a phrase is compared with to see whether it was a command at
/// all: the most frequent 3000, none that nobody wants to read in a tip about what was heard.
std::vector<std::string> frequentWords(std::vector<std::pair<int, std::string>> ranked);

}  // namespace agent
