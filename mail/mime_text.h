#pragma once

#include <string>

namespace velmora {

/// Reduces a body of several parts to the text of its first one; answers whether it is such a body, that is,
/// holds "------=_" within its first 32767 characters. Any other body stays as it is.
///
/// What is left begins with the character behind "bit" and the one that follows it, and ends with the first
/// "-" of the next boundary; without another boundary it is empty. All of this, that any word ending in "bit"
/// counts included, is meant.
bool StripMimeText(std::string& body);

}  // namespace velmora
