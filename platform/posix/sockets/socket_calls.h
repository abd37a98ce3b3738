#pragma once

#include "platform/posix/file_descriptor.h"
#include "platform/posix/sockets/address.h"

namespace velmora::sockets {

enum class Protocol { tcp, udp };

/// A socket that does not block. Fails with 28 if the system has no more.
FileDescriptor openSocket(int family, Protocol protocol);

/// Fails with 10048 if the port is in use, 10013 if this user may not have it, 10049 if the address is none
/// of this machine's. A TCP port counts as free while only ended connections remember it.
void bindTo(const FileDescriptor& socket, const Address& address, Protocol protocol);

/// The number that an `errno` of a connection or an attempt at one stands for: 10060, 10061 or 10065.
long failureOf(int error);

/// Whether a connection ended by this `errno` was ended by its peer.
bool endedByPeer(int error);

/// Small messages leave at once, and a peer that has silently gone is noticed.
void prepareConnection(const FileDescriptor& socket);

}  // namespace velmora::sockets
