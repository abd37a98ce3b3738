#pragma once

#include <string>
#include <string_view>

namespace agent {

/// Whether the bytes are text in UTF-8.
bool isUtf8(std::string_view bytes);

/// Bytes read as Windows-1252; each is one character, and one unit of UTF-16.
std::string fromWindows1252(std::string_view bytes);

/// Bytes read as text: valid UTF-8 as it is, all else as Windows-1252.
std::string toUtf8(std::string_view bytes);

/// Bytes read as text, in UTF-8, its letters in lower case: Latin, Greek and Cyrillic ones.
std::string lowerCase(std::string_view bytes);

/// Whether two names are the same but for the case of the letters a to z.
bool sameName(std::string_view left, std::string_view right);

}  // namespace agent
