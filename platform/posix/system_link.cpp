#include "platform/posix/system_link.h"

#include <algorithm>

#include "base/text.h"
#include "platform/posix/network_interfaces.h"

namespace velmora {
namespace {

constexpr std::string_view separators = ", \t;";

bool isAny(std::string_view kinds) {
    return kinds.find_first_not_of(separators) == std::string_view::npos ||
           equalsIgnoringCase(trim(kinds), "any");
}

}  // namespace

bool holdsKind(std::string_view kinds, std::string_view kind) {
    if (isAny(kinds)) return true;
    while (!kinds.empty()) {
        const std::string_view entry = kinds.substr(0, kinds.find_first_of(separators));
        if (!entry.empty() && equalsIgnoringCase(entry, kind)) return true;
        kinds.remove_prefix(std::min(entry.size() + 1, kinds.size()));
    }
    return false;
}

std::optional<std::vector<LinkHandle>> SystemLink::RasEnumConnections() const {
    const auto interfaces = networkInterfaces();
    if (!interfaces) return std::nullopt;
    std::vector<LinkHandle> links;
    if (const std::string counted = kinds(); !isAny(counted)) {
        for (const auto& interface : *interfaces) {
            if (interface.switchedOn && holdsKind(counted, interface.kind)) links.push_back(interface.index);
        }
        return links;
    }
    const auto ways = interfacesToInternet();
    if (!ways) return std::nullopt;
    for (const unsigned index : *ways) {
        const auto way = std::ranges::find(*interfaces, index, &NetworkInterface::index);
        if (way != interfaces->end() && way->kind != "loopback") links.push_back(index);
    }
    return links;
}

std::optional<LinkStatus> SystemLink::RasGetConnectStatus(LinkHandle link) const {
    const auto interfaces = networkInterfaces();
    if (!interfaces) return std::nullopt;
    const auto found = std::ranges::find(*interfaces, link, &NetworkInterface::index);
    if (found == interfaces->end()) return std::nullopt;
    return found->switchedOn && found->carrier && found->hasAddress ? LinkStatus::connected
                                                                    : LinkStatus::connecting;
}

long SystemLink::InternetAutodial() {
    return dial_ ? dial_(kinds()) : cannotDial;
}

}  // namespace velmora
