#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace velmora {

/// The status number of a link.
enum class LinkStatus : std::int32_t {
    connecting = 0,    ///< stands for everything short of connected
    connected = 8192,  ///< RASCS_Connected
};

/// Tells the links of a machine apart; 0 is none of them.
using LinkHandle = std::uint32_t;

/// The machine's way to the Internet.
class Link {
public:
    virtual ~Link() = default;

    /// The links of the kinds that the machine's settings count, in the system's order; empty if there is
    /// none. Nothing if the system can't be asked. Costs little, like `RasGetConnectStatus`: callers ask in a
    /// loop.
    virtual std::optional<std::vector<LinkHandle>> RasEnumConnections() const = 0;

    /// The status of a link; nothing if there is none of that handle, or no longer.
    virtual std::optional<LinkStatus> RasGetConnectStatus(LinkHandle link) const = 0;

    /// Asks the system to connect, without asking the person, and returns at once: 0 if it has taken that up,
    /// another number if not or if there is nothing that could dial. Whether a link comes up, its status
    /// tells. Never fails.
    virtual long InternetAutodial() = 0;
};

}  // namespace velmora
