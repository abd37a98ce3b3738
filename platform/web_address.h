#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// The address as it is asked for: with a scheme and a path, without a fragment, and with every byte escaped
/// that would break a request line (blanks, controls, bytes above 126, the last ones in the host excepted).
/// What is escaped already stays.
///
/// Fails with 35753 for a scheme other than http and https, 35752 for an address without a usable host.
std::string webAddress(std::string_view address);

}  // namespace velmora
