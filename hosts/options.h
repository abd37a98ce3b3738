#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/conversions.h"

namespace velmora {

/// What the command line chooses. The logic reads none of it: it decides what the platform gives.
struct Options {
    bool console = false;               ///< terminal host instead of windows
    bool windows = false;               ///< with the terminal host: show the windows too
    std::string folder;                 ///< the application folder; empty: the user's data folder
    std::string address;                ///< local address of the peer sockets; empty: any
    std::optional<DateTime> clock;      ///< the local time at which the program's clock starts
    std::optional<std::uint64_t> seed;  ///< of the random source
    bool open = true;                   ///< whether what the program opens is really started
};

/// What to print instead of running, and the exit status.
struct Usage {
    std::string text;
    int status = 0;  ///< 0: asked for, to standard output; 2: a wrong option, to standard error
};

/// Reads the arguments behind the program's name.
std::variant<Options, Usage> parseOptions(const std::vector<std::string>& arguments);

}  // namespace velmora
