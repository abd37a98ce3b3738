#include "platform/posix/sockets/socket_calls.h"

#include <netinet/in.h>
#include <netinet/tcp.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "base/failure.h"

namespace velmora::sockets {
namespace {

using Row = std::pair<int, long>;

constexpr std::array bindFailures{
    Row{EADDRINUSE, errors::addressInUse},
    Row{EACCES, errors::portNotPermitted},
    Row{EPERM, errors::portNotPermitted},
};

constexpr std::array connectFailures{
    Row{ETIMEDOUT, errors::connectionTimedOut}, Row{ECONNREFUSED, errors::connectionRefused},
    Row{ECONNRESET, errors::connectionRefused}, Row{EADDRINUSE, errors::addressInUse},
    Row{ENOMEM, errors::outOfStackSpace},
};

template <std::size_t size>
long lookUp(const std::array<Row, size>& table, int error, long otherwise) {
    const auto* row =
        std::find_if(table.begin(), table.end(), [error](const Row& each) { return each.first == error; });
    return row != table.end() ? row->second : otherwise;
}

void set(const FileDescriptor& socket, int level, int option, int value) {
    setsockopt(socket.number(), level, option, &value, sizeof value);
}

}  // namespace

FileDescriptor openSocket(int family, Protocol protocol) {
    const int type = protocol == Protocol::tcp ? SOCK_STREAM : SOCK_DGRAM;
    FileDescriptor socket(::socket(family, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!socket && errno == EAFNOSUPPORT) throw Failure(errors::addressNotAvailable);
    if (!socket) throw Failure(errors::outOfStackSpace);
    if (family == AF_INET6) set(socket, IPPROTO_IPV6, IPV6_V6ONLY, 1);
    return socket;
}

void bindTo(const FileDescriptor& socket, const Address& address, Protocol protocol) {
    if (protocol == Protocol::tcp) set(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    if (::bind(socket.number(), address.raw(), address.size()) != 0)
        throw Failure(lookUp(bindFailures, errno, errors::addressNotAvailable));
}

long failureOf(int error) {
    return lookUp(connectFailures, error, errors::hostUnreachable);
}

bool endedByPeer(int error) {
    return error == ECONNRESET || error == EPIPE || error == ECONNABORTED;
}

void prepareConnection(const FileDescriptor& socket) {
    constexpr int secondsOfSilence = 60;
    constexpr int secondsBetweenQuestions = 10;
    constexpr int questions = 3;
    set(socket, IPPROTO_TCP, TCP_NODELAY, 1);
    set(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
    set(socket, IPPROTO_TCP, TCP_KEEPIDLE, secondsOfSilence);
    set(socket, IPPROTO_TCP, TCP_KEEPINTVL, secondsBetweenQuestions);
    set(socket, IPPROTO_TCP, TCP_KEEPCNT, questions);
}

}  // namespace velmora::sockets
