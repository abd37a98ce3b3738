#pragma once

#include <string_view>

namespace velmora {

/// The settings file of the default profile. The choice of the profile itself always lies in it, whichever is
/// in use.
inline constexpr std::string_view defaultProfile = "Velmora.ini";

}  // namespace velmora
