#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// Asks for a password on the controlling terminal, without showing what is typed, then with
/// `repeatedQuestion` once more; where standard input is no terminal, takes its first line instead. The
/// terminal shows what is typed again afterwards, also when a signal stops or ends the program meanwhile.
/// Nothing if the input ends before an answer, or if the two answers differ, which it says on the terminal.
std::optional<std::string> askForPassword(std::string_view question, std::string_view repeatedQuestion);

}  // namespace velmora
