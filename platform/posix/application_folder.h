#pragma once

#include <string>

namespace velmora {

/// Where a user's settings and data lie unless the program is told otherwise: "velmora" in $XDG_DATA_HOME,
/// which is
/// ~/.local/share where it is unset or relative. Creates nothing. Empty if the user has no home.
std::string defaultApplicationFolder();

/// Where the program keeps for this user what is no setting, as where a window stood: "velmora" in
/// $XDG_STATE_HOME, which is ~/.local/state where it is unset or relative. Creates nothing. Empty if the user
/// has no home.
std::string stateFolder();

}  // namespace velmora
