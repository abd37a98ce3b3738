#pragma once

#include <functional>
#include <string>

namespace velmora {

/// A list of programs or sites that the user edits, row by row as it stands at the moment.
struct CommandList {
    static constexpr int rows = 10;
    std::function<std::string(int row)> name = {};    ///< what the user calls it; empty: there is no list
    std::function<std::string(int row)> target = {};  ///< what is opened
};

struct CommandLists {
    CommandList office;
    CommandList favourites;
};

}  // namespace velmora
