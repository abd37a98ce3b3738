#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/machine_settings.h"
#include "platform/posix/sockets/context.h"
#include "platform/winsock.h"

namespace velmora {

/// The sockets of this machine: TCP and UDP, on one thread of their own, which starts with the first socket
/// that is used.
class PosixWinsocks : public Winsocks {
public:
    /// All of these outlive the sockets.
    struct Needs {
        Loop& loop;
        /// Runs a call in the program's thread, as `Loop::post` does; from any thread.
        sockets::EventQueue::Post post;
        /// Where `[Mail]` says how a mail server is reached.
        const MachineSettings& settings;
        /// The address of the sockets that talk to peers, in numbers; empty: any.
        std::string address;
        /// Takes a line for whoever looks after the machine: why a mail server is not trusted.
        std::function<void(const std::string& line)> report;
    };

    explicit PosixWinsocks(Needs needs);
    ~PosixWinsocks() override;
    PosixWinsocks(const PosixWinsocks&) = delete;
    PosixWinsocks& operator=(const PosixWinsocks&) = delete;

    std::unique_ptr<TcpWinsock> createTcp(StreamUse use) override;
    std::unique_ptr<UdpWinsock> createUdp() override;

    /// For somebody who has waited so long for traffic on the sockets, and goes on after a span of `quiet`
    /// without any: how long he has to wait on. 0 if no socket is open.
    std::chrono::milliseconds untilQuiet(std::chrono::milliseconds quiet,
                                         std::chrono::milliseconds waited) const;

private:
    Needs needs_;
    sockets::Reactor reactor_;
    std::shared_ptr<sockets::EventQueue> queue_;
    sockets::Calls calls_;
    sockets::Resolver resolver_;
    sockets::Context context_;
};

}  // namespace velmora
