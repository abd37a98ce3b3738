#pragma once

#include <functional>
#include <string_view>

#include "platform/link.h"
#include "platform/machine_settings.h"

namespace velmora {

/// The network interfaces of this machine as links. What counts is `[Link] Kinds` of the machine's settings:
///
/// - `any`, or nothing: the interfaces over which the system would send to the Internet (a loopback never
///   is one);
/// - a list of `ppp`, `ethernet`, `wifi`, `wwan`, `tunnel`: every interface of these kinds that is switched
///   on, in the system's order, whether or not it leads to the Internet.
///
/// Either way one is connected when it has carrier and an address that is not of the link alone.
class SystemLink : public Link {
public:
    /// Asks the system to connect, as `InternetAutodial` tells; empty: nothing can dial.
    using Dial = std::function<long(std::string_view kinds)>;

    SystemLink(const MachineSettings& machine, Dial dial) : machine_(machine), dial_(std::move(dial)) {}

    std::optional<std::vector<LinkHandle>> RasEnumConnections() const override;
    std::optional<LinkStatus> RasGetConnectStatus(LinkHandle link) const override;
    long InternetAutodial() override;

    /// What a dial gives that nobody can take up.
    static constexpr long cannotDial = 668;

private:
    std::string kinds() const { return machine_.value("Link", "Kinds"); }

    const MachineSettings& machine_;
    Dial dial_;
};

/// Whether the kind is in the list, which is separated by commas or blanks; `any`, or an empty list, holds
/// all.
bool holdsKind(std::string_view kinds, std::string_view kind);

}  // namespace velmora
