#include "platform/posix/sockets/calls.h"

namespace velmora::sockets {

long Calls::add(Event& called) {
    const long number = called.number;
    Waiting& waiting = waiting_[number];
    waiting.caller = {std::move(called.caller), std::move(called.address), {}};
    queue_.hold(waiting.caller.stream->channel(), waiting);
    return number;
}

std::optional<Caller> Calls::take(long number) {
    auto waiting = waiting_.extract(number);
    if (!waiting) return {};
    queue_.release(waiting.mapped().caller.stream->channel());
    return std::move(waiting.mapped().caller);
}

void Calls::drop(long number) {
    if (const auto caller = take(number)) caller->stream->close();
}

}  // namespace velmora::sockets
