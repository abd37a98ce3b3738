#pragma once

#include <sys/socket.h>

#include <cstdint>
#include <optional>
#include <string>

namespace velmora::sockets {

/// An address of the Internet protocol, version 4 or 6, with a port.
class Address {
public:
    /// Takes over what a system call gave.
    Address(const sockaddr_storage& raw, socklen_t size) : raw_(raw), size_(size) {}

    /// Reads an address in numbers; nothing if it is a name, or nonsense.
    static std::optional<Address> parse(const std::string& numbers, std::uint16_t port);

    /// Every address of this machine, in that family.
    static Address any(int family, std::uint16_t port);

    /// The other end of a connection; nothing if it has gone.
    static std::optional<Address> peerOf(int descriptor);

    int family() const { return raw_.ss_family; }

    /// In numbers, without the port.
    std::string text() const;

    const sockaddr* raw() const { return reinterpret_cast<const sockaddr*>(&raw_); }
    socklen_t size() const { return size_; }

private:
    sockaddr_storage raw_;
    socklen_t size_;
};

/// The address of this machine's first network that is up, or that of the loopback.
std::string machineAddress();

}  // namespace velmora::sockets
