#include "platform/posix/sockets/address.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <array>
#include <memory>

namespace velmora::sockets {
namespace {

Address make(const sockaddr_in& address) {
    sockaddr_storage raw{};
    reinterpret_cast<sockaddr_in&>(raw) = address;
    return {raw, sizeof address};
}

Address make(const sockaddr_in6& address) {
    sockaddr_storage raw{};
    reinterpret_cast<sockaddr_in6&>(raw) = address;
    return {raw, sizeof address};
}

}  // namespace

std::optional<Address> Address::parse(const std::string& numbers, std::uint16_t port) {
    if (numbers.find('\0') != std::string::npos) return {};
    sockaddr_in four{};
    four.sin_family = AF_INET;
    four.sin_port = htons(port);
    if (inet_pton(AF_INET, numbers.c_str(), &four.sin_addr) == 1) return make(four);
    sockaddr_in6 six{};
    six.sin6_family = AF_INET6;
    six.sin6_port = htons(port);
    if (inet_pton(AF_INET6, numbers.c_str(), &six.sin6_addr) == 1) return make(six);
    return {};
}

Address Address::any(int family, std::uint16_t port) {
    if (family == AF_INET6) {
        sockaddr_in6 six{};
        six.sin6_family = AF_INET6;
        six.sin6_port = htons(port);
        return make(six);
    }
    sockaddr_in four{};
    four.sin_family = AF_INET;
    four.sin_port = htons(port);
    return make(four);
}

std::optional<Address> Address::peerOf(int descriptor) {
    sockaddr_storage raw{};
    socklen_t size = sizeof raw;
    if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&raw), &size) != 0) return {};
    return Address(raw, size);
}

std::string Address::text() const {
    std::array<char, INET6_ADDRSTRLEN> text{};
    const void* numbers = family() == AF_INET
                              ? static_cast<const void*>(&reinterpret_cast<const sockaddr_in&>(raw_).sin_addr)
                              : &reinterpret_cast<const sockaddr_in6&>(raw_).sin6_addr;
    return inet_ntop(family(), numbers, text.data(), text.size()) != nullptr ? text.data() : "";
}

std::string machineAddress() {
    std::string found = "127.0.0.1";
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) return found;
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> all(first, freeifaddrs);
    for (const ifaddrs* entry = first; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) continue;
        if ((entry->ifa_flags & IFF_LOOPBACK) != 0 || (entry->ifa_flags & IFF_RUNNING) == 0) continue;
        return make(reinterpret_cast<const sockaddr_in&>(*entry->ifa_addr)).text();
    }
    return found;
}

}  // namespace velmora::sockets
