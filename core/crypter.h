#pragma once

#include <string>
#include <string_view>

namespace velmora {

// Only the sum behind a key counts, and these two have good ones: enciphered, hardly a date of the years to
// come, and no usual first name, holds a line end, which would break its line in the appointments or the user
// list.

/// Hides the mail account, the messenger account, the appointments and what friends write in a chat. Fixed
/// for ever: the files of every installation, and every chat partner, depend on it.
inline constexpr std::string_view mainKey =
    "yrG7zugREMT2BzxgdSq5RbxsUAPWUUkyivgIbOH4uaevmOp8hDRwr09UAL0yHZJDYiyN1"
    "Pl1q6zYe3zYFjcX1DhBnyhhduvXNzfg5sZ8IpmZ4qKaosziAzXtowddA50d3eyOKH6tpK";

/// Hides the user list. Fixed for ever, as existing lists depend on it.
inline constexpr std::string_view userListKey =
    "YQqcNmgu4Ubxu3CQD6I74OTfqOUHq8EmwTFu2LcJIt5UumNQq9AT0ZsT5AZoKUhKKiP2v"
    "Dd2Osbff6UtHt6pXOaz9RbJJRWhEao6kD9fPbcin4MCilUBpbSgjlre5XNO4ZlWG5YR8o";

inline constexpr std::string_view::size_type keyLength = 138;
static_assert(mainKey.size() == keyLength && userListKey.size() == keyLength);

/// Hides the text from casual eyes; it keeps no secret from anyone who tries. Gives as many characters as the
/// text has, any byte among them, line ends too. A character of code 255 is meant to come back from
/// `Decipher` as code 0: a modulus that kept it would make existing files unreadable.
std::string Encipher(std::string_view text, std::string_view key);

/// What `Encipher` made of a text, given the same key. Any bytes and any key give some text; nothing fails.
std::string Decipher(std::string_view cipher, std::string_view key);

}  // namespace velmora
