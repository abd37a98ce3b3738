#include "platform/posix/network_interfaces.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/if_packet.h>
#include <linux/rtnetlink.h>
#include <linux/wireless.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>

#include "platform/posix/file_descriptor.h"

namespace velmora {
namespace {

struct HardwareKind {
    unsigned short hardware;
    std::string_view kind;
};

constexpr std::array hardwareKinds{
    HardwareKind{ARPHRD_LOOPBACK, "loopback"}, HardwareKind{ARPHRD_PPP, "ppp"},
    HardwareKind{ARPHRD_ETHER, "ethernet"},    HardwareKind{ARPHRD_RAWIP, "wwan"},
    HardwareKind{ARPHRD_NONE, "tunnel"},       HardwareKind{ARPHRD_TUNNEL, "tunnel"},
    HardwareKind{ARPHRD_TUNNEL6, "tunnel"},    HardwareKind{ARPHRD_SIT, "tunnel"},
    HardwareKind{ARPHRD_IPGRE, "tunnel"},
};

bool isWireless(const std::string& name) {
    const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    iwreq request{};
    name.copy(static_cast<char*>(request.ifr_name), IFNAMSIZ - 1);
    return ::ioctl(socket.number(), SIOCGIWNAME, &request) == 0;
}

std::string_view kindOf(unsigned short hardware, const std::string& name) {
    const auto* const found = std::ranges::find(hardwareKinds, hardware, &HardwareKind::hardware);
    if (found == hardwareKinds.end()) return {};
    if (name.starts_with("wwan")) return "wwan";  // by the system's own naming, whatever it looks like
    if (hardware == ARPHRD_ETHER && isWireless(name)) return "wifi";
    return found->kind;
}

/// Whether the address is one of more than its own link. Nothing for another family.
bool reachesBeyondLink(const sockaddr& address) {
    if (address.sa_family == AF_INET) {
        in_addr host{};
        std::memcpy(&host, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, sizeof host);
        const std::uint32_t number = ntohl(host.s_addr);
        constexpr std::uint32_t linkLocal = 0xA9FE;  // 169.254.0.0/16
        return number != INADDR_ANY && (number >> 24U) != IN_LOOPBACKNET && (number >> 16U) != linkLocal;
    }
    if (address.sa_family == AF_INET6) {
        const auto& host = reinterpret_cast<const sockaddr_in6&>(address).sin6_addr;
        return !IN6_IS_ADDR_LINKLOCAL(&host) && !IN6_IS_ADDR_LOOPBACK(&host);
    }
    return false;
}

using Buffer = std::array<char, 8192>;

/// Asks for the route to the address; the answer's bytes, or nothing if the system can't be asked.
std::optional<std::size_t> askRoute(int family, const void* address, std::size_t size, Buffer& buffer) {
    const FileDescriptor netlink(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE));
    if (netlink.number() < 0) return std::nullopt;
    struct {
        nlmsghdr header;
        rtmsg route;
        rtattr attribute;
        std::array<unsigned char, sizeof(in6_addr)> destination;
    } request{};
    request.header.nlmsg_type = RTM_GETROUTE;
    request.header.nlmsg_flags = NLM_F_REQUEST;
    request.header.nlmsg_len = static_cast<std::uint32_t>(NLMSG_LENGTH(sizeof(rtmsg)) + RTA_LENGTH(size));
    request.route.rtm_family = static_cast<unsigned char>(family);
    request.route.rtm_dst_len = static_cast<unsigned char>(size * 8);
    request.attribute.rta_type = RTA_DST;
    request.attribute.rta_len = static_cast<unsigned short>(RTA_LENGTH(size));
    std::memcpy(request.destination.data(), address, size);
    if (::send(netlink.number(), &request, request.header.nlmsg_len, 0) < 0) return std::nullopt;
    const auto count = ::recv(netlink.number(), buffer.data(), buffer.size(), 0);  // already there
    return count > 0 ? std::optional(static_cast<std::size_t>(count)) : std::nullopt;
}

/// The interface that the route goes out of; 0: there is no route.
unsigned outgoing(const Buffer& buffer, std::size_t count) {
    const auto* const header = reinterpret_cast<const nlmsghdr*>(buffer.data());
    if (!NLMSG_OK(header, count) || header->nlmsg_type != RTM_NEWROUTE) return 0;
    const auto* const route = static_cast<const rtmsg*>(NLMSG_DATA(header));
    if (route->rtm_type != RTN_UNICAST) return 0;
    auto left = RTM_PAYLOAD(header);
    for (const auto* attribute = RTM_RTA(route); RTA_OK(attribute, left);
         attribute = RTA_NEXT(attribute, left)) {
        unsigned index = 0;
        if (attribute->rta_type != RTA_OIF) continue;
        std::memcpy(&index, RTA_DATA(attribute), sizeof index);
        return index;
    }
    return 0;
}

}  // namespace

std::optional<std::vector<NetworkInterface>> networkInterfaces() {
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0) return std::nullopt;
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> entries(first, &::freeifaddrs);

    std::vector<NetworkInterface> found;
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_PACKET) continue;
        const auto& packet = *reinterpret_cast<const sockaddr_ll*>(entry->ifa_addr);
        constexpr unsigned carrier = IFF_RUNNING | IFF_LOWER_UP;
        found.push_back({.index = static_cast<unsigned>(packet.sll_ifindex),
                         .name = entry->ifa_name,
                         .kind = kindOf(packet.sll_hatype, entry->ifa_name),
                         .switchedOn = (entry->ifa_flags & IFF_UP) != 0,
                         .carrier = (entry->ifa_flags & carrier) == carrier});
    }
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || !reachesBeyondLink(*entry->ifa_addr)) continue;
        // An address may have a label of its own behind the interface's name and a colon.
        const std::string_view label = entry->ifa_name;
        const auto owner =
            std::ranges::find(found, label.substr(0, label.find(':')), &NetworkInterface::name);
        if (owner != found.end()) owner->hasAddress = true;
    }
    return found;
}

std::optional<std::vector<unsigned>> interfacesToInternet() {
    // Any address far out serves: one of the root name servers'. Nothing is sent there.
    struct Destination {
        int family;
        const char* address;
        std::size_t size;
    };
    constexpr std::array destinations{Destination{AF_INET, "198.41.0.4", sizeof(in_addr)},
                                      Destination{AF_INET6, "2001:503:ba3e::2:30", sizeof(in6_addr)}};
    std::vector<unsigned> found;
    for (const Destination& destination : destinations) {
        in6_addr address{};
        ::inet_pton(destination.family, destination.address, &address);
        alignas(nlmsghdr) Buffer buffer{};
        const auto count = askRoute(destination.family, &address, destination.size, buffer);
        if (!count) return std::nullopt;
        const unsigned index = outgoing(buffer, *count);
        if (index != 0 && std::ranges::find(found, index) == found.end()) found.push_back(index);
    }
    return found;
}

}  // namespace velmora
