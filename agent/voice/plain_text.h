#pragma once

#include <string>
#include <string_view>

namespace agent {

/// A word in the characters that an English voice can read: letters without their accents, plain quotes and
/// dashes, blanks for all else. At most 400 characters.
std::string toPlainText(std::string_view word);

}  // namespace agent
