#pragma once

#include <QString>
#include <cstddef>
#include <string>
#include <string_view>

namespace velmora::qt {

/// The text as a window shows it: UTF-8, or Windows-1252 where the whole is not valid UTF-8. Every line end
/// becomes a line feed; of the other control characters only the tab stays.
QString shown(std::string_view bytes);

/// The bytes of what a person has typed or picked: UTF-8.
std::string typedBytes(const QString& text);

/// Where in `shown(bytes)` the byte at `offset` stands; an offset inside a character counts as its begin, one
/// behind the end as the end.
int shownOffset(std::string_view bytes, std::size_t offset);

/// The byte at which the character at `position` of `shown(bytes)` begins; `bytes.size()` behind the last.
std::size_t byteOffset(std::string_view bytes, int position);

}  // namespace velmora::qt
