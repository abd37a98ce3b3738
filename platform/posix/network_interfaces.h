#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// One network interface, as the system tells it.
struct NetworkInterface {
    unsigned index = 0;
    std::string name;
    std::string_view kind;    ///< loopback, ppp, ethernet, wifi, wwan, tunnel, or empty
    bool switchedOn = false;  ///< whether or not there is anything at the other end
    bool carrier = false;
    bool hasAddress = false;  ///< one that is not of the link alone
};

/// The interfaces of this machine, or of the process's network namespace, in the system's order. Nothing if
/// the system can't be asked.
std::optional<std::vector<NetworkInterface>> networkInterfaces();

/// Numbers of the interfaces over which the system would send to the Internet, of IPv4 first; empty where it
/// knows no way. Nothing if the system can't be asked. Sends nothing.
std::optional<std::vector<unsigned>> interfacesToInternet();

}  // namespace velmora
