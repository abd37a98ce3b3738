#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "base/failure.h"

namespace velmora {

/// The numbers are what a status line's table is looked up by.
enum class SocketState {
    closed = 0,
    open = 1,
    listening = 2,
    connectionPending = 3,
    resolvingHost = 4,
    hostResolved = 5,
    connecting = 6,
    connected = 7,
    closing = 8,  ///< the peer has ended the connection, this side has not closed it yet
    error = 9,    ///< the connection, or the attempt at one, has failed
};

/// What a TCP socket raises, each event in a turn of its own and in the order in which things happened. While
/// a handler waits in the loop, further events come nested in it. Nothing is raised after `Close()`, nor of
/// a connection that another one has taken the place of.
struct TcpEvents {
    /// Somebody calls at a listening socket: `RemoteHostIP` is the caller's address, `Accept` takes the call.
    /// If the handler returns without that, the caller sees the connection closed.
    std::function<void(long requestID)> ConnectionRequest;
    /// What `Connect` asked for stands. Not raised for an accepted connection.
    std::function<void()> Connect;
    /// Data is there for one `GetData`; `bytesTotal` counts all bytes that are unread.
    std::function<void(std::size_t bytesTotal)> DataArrival;
    /// The data of one `SendData` has left, whole. Raised once for each, an empty one included.
    std::function<void()> SendComplete;
    /// The peer has ended the connection, in order or not; all that it sent before has been raised.
    std::function<void()> Close;
    /// The attempt to connect has failed (10060, 10061, 10065, 11001), or the connection has: 10060 if the
    /// peer has fallen silent, 10065 if the network is gone. The state is `error` until `Close()`.
    std::function<void(const Failure&)> Error;
};

/// A TCP socket as the program's forms hold it: one at a time, it listens, or is one connection. It keeps
/// every byte as it is. Not to be destroyed while one of its events is on the stack (`Loop::retire`).
///
/// `State` changes together with the events: a connection whose end has not been raised is `connected` still.
class TcpWinsock {
public:
    /// Closes the socket.
    virtual ~TcpWinsock() = default;

    /// Ends whatever the socket does, and drops what has not left yet and what is unread. Waiting callers
    /// whose `ConnectionRequest` is on the stack stay. Never fails; a closed socket stays closed.
    virtual void Close() = 0;

    /// Waits for callers on `LocalPort`. Fails with 10048 if the port is in use, 10013 if this user may not
    /// have it, 40006 in the states from `listening` to `connected`; a connection that is over makes way.
    virtual void Listen() = 0;

    /// Takes the call: the socket, which must be closed, becomes the connection to the caller, and what has
    /// come on it already is raised from now on. If the caller has hung up meanwhile, `Close` follows. Fails
    /// with 40006 if the socket is not closed, or if there is no such request.
    virtual void Accept(long requestID) = 0;

    /// Begins to connect from `LocalPort` to `RemoteHost` at `RemotePort`; `Connect` or `Error` follows.
    /// Fails with 40006 if the socket is not closed, 10049 for an empty host, 10048 if the local port, or the
    /// pair of it and this peer, is in use, 10013 if this user may not have the port.
    virtual void Connect() = 0;
    void Connect(const std::string& host, std::uint16_t port) {
        RemoteHost = host;
        RemotePort = port;
        Connect();
    }

    /// Takes the data, of any size, and returns at once. Fails with 40006 in every state but `connected`.
    virtual void SendData(std::string data) = 0;

    /// What the oldest data event that has not been read yet brought; empty if all has been read. Nested
    /// handlers thus read in the order of arrival. Fails with 40006 in the states `closed` and `listening`,
    /// 28 if there is no memory for the data.
    virtual std::string GetData() = 0;

    virtual SocketState State() const = 0;

    /// The address that this machine believes it has, in numbers. Never fails, whatever the state; a machine
    /// without a network gives that of the loopback.
    virtual std::string LocalIP() const = 0;

    /// The peer's address, in numbers: of the latest request while listening, else of the latest connection.
    /// Empty before there was any.
    virtual std::string RemoteHostIP() const = 0;

    // Looked at by the next `Listen` or `Connect`; the socket itself changes none of them.
    std::uint16_t LocalPort = 0;  ///< 0: the system chooses one
    std::string RemoteHost;       ///< a name or an address
    std::uint16_t RemotePort = 0;

    TcpEvents events;
};

/// What a UDP socket raises, each event in a turn of its own.
struct UdpEvents {
    /// One datagram is there for one `GetData`.
    std::function<void(std::size_t bytesTotal)> DataArrival;
    /// The name of a receiver is not known (11001), or the socket can't receive any more (10065). A datagram
    /// that is lost, or that nobody takes, is not told.
    std::function<void(const Failure&)> Error;
};

/// A UDP socket. Not to be destroyed while one of its events is on the stack (`Loop::retire`).
class UdpWinsock {
public:
    /// Closes the socket.
    virtual ~UdpWinsock() = default;

    /// Gives up the port; what is unread is dropped and nothing is raised any more. Never fails.
    virtual void Close() = 0;

    /// Sends from, and receives at, this port from now on. Fails with 10048 if it is in use, 10013 if this
    /// user may not have it, 40006 if the socket is bound already.
    virtual void Bind(std::uint16_t localPort) = 0;

    /// Sends one datagram to `RemoteHost` at `RemotePort`, and returns at once; a name is looked up in the
    /// background. Fails with 40006 if the socket is not bound, 10049 for an empty host, 10040 if the data is
    /// longer than a datagram can be, 10065 if there is no way to the host.
    virtual void SendData(const std::string& data) = 0;

    /// The oldest unread datagram, whole; empty if there is none. Fails with 40006 if the socket is not
    /// bound.
    virtual std::string GetData() = 0;

    /// Where the datagram came from that the latest `GetData` gave, in numbers; empty before there was any.
    virtual std::string RemoteHostIP() const = 0;

    // Looked at by the next `SendData`.
    std::string RemoteHost;  ///< a name or an address
    std::uint16_t RemotePort = 0;

    UdpEvents events;
};

/// What a TCP socket is for, and thereby how it cuts the stream into data events.
enum class StreamUse {
    /// Data is raised as it comes. Where the machine's settings say so, the connection is encrypted, its port
    /// and handshake included, without the program noticing: what it reads begins with the server's greeting.
    mail,
    /// Each `SendData` becomes one data event at the peer, as far as that can be had without changing a byte.
    chat,
    /// As `chat`; and where a long body has run together with its neighbours, an event begins at "FILE" and a
    /// "FILEEND" is not cut in two.
    file,
};

/// Makes sockets. They belong to the caller, are closed at first, and do not outlive what made them.
class Winsocks {
public:
    virtual ~Winsocks() = default;
    virtual std::unique_ptr<TcpWinsock> createTcp(StreamUse use) = 0;
    virtual std::unique_ptr<UdpWinsock> createUdp() = 0;
};

}  // namespace velmora
