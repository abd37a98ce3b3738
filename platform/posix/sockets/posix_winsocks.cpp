#include "platform/posix/sockets/posix_winsocks.h"

#include <algorithm>
#include <utility>

#include "platform/posix/sockets/posix_tcp_winsock.h"
#include "platform/posix/sockets/posix_udp_winsock.h"

namespace velmora {

using std::chrono::milliseconds;

PosixWinsocks::PosixWinsocks(Needs needs)
    : needs_(std::move(needs)),
      queue_(std::make_shared<sockets::EventQueue>(needs_.loop, needs_.post)),
      calls_(*queue_),
      context_{{reactor_, *queue_}, resolver_, calls_, needs_.settings, needs_.address, needs_.report} {}

PosixWinsocks::~PosixWinsocks() {
    resolver_.stop();
    reactor_.stop();
    queue_->clear();
}

std::unique_ptr<TcpWinsock> PosixWinsocks::createTcp(StreamUse use) {
    return std::make_unique<sockets::PosixTcpWinsock>(context_, use);
}

std::unique_ptr<UdpWinsock> PosixWinsocks::createUdp() {
    return std::make_unique<sockets::PosixUdpWinsock>(context_);
}

milliseconds PosixWinsocks::untilQuiet(milliseconds quiet, milliseconds waited) const {
    if (!queue_->held()) return milliseconds{0};
    const auto sinceTraffic =
        std::chrono::floor<milliseconds>(sockets::EventQueue::Clock::now() - queue_->lastTraffic());
    return std::max(quiet - std::min(waited, sinceTraffic), milliseconds{0});
}

}  // namespace velmora
