#pragma once

#include <optional>
#include <vector>

namespace velmora {

enum class LinkState {
    connecting,  ///< anything short of connected
    connected,
};

/// The machine's way to the Internet.
class Link {
public:
    virtual ~Link() = default;

    /// The links of the kinds that the machine's settings count, in the system's order; empty if there is
    /// none. Nothing if the system can't be asked. Costs little: callers ask in a loop.
    virtual std::optional<std::vector<LinkState>> connections() const = 0;

    /// Asks the system to connect, without asking the person, and returns at once: 0 if it has taken that up,
    /// another number if not or if there is nothing that could dial. Whether a link comes up, `connections`
    /// tells. Never fails.
    virtual long InternetAutodial() = 0;
};

}  // namespace velmora
