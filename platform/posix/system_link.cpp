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

LinkState stateOf(const NetworkInterface& interface) {
    return interface.switchedOn && interface.carrier && interface.hasAddress ? LinkState::connected
                                                                             : LinkState::connecting;
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

std::optional<std::vector<LinkState>> SystemLink::connections() const {
    const auto interfaces = networkInterfaces();
    if (!interfaces) return std::nullopt;
    std::vector<LinkState> states;
    if (const std::string counted = kinds(); !isAny(counted)) {
        for (const auto& interface : *interfaces) {
            if (interface.switchedOn && holdsKind(counted, interface.kind))
                states.push_back(stateOf(interface));
        }
        return states;
    }
    const auto ways = interfacesToInternet();
    if (!ways) return std::nullopt;
    for (const unsigned index : *ways) {
        const auto way = std::ranges::find(*interfaces, index, &NetworkInterface::index);
        if (way != interfaces->end() && way->kind != "loopback") states.push_back(stateOf(*way));
    }
    return states;
}

long SystemLink::InternetAutodial() {
    return dial_ ? dial_(kinds()) : cannotDial;
}

}  // namespace velmora
