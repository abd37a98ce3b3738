#pragma once

#include <string>
#include <string_view>

namespace agent {

/// The words of a transcript as a tip shows what was heard: in lower case, without punctuation, and without
/// those that nobody wants to read there.
std::string shownWords(std::string_view transcript);

}  // namespace agent
