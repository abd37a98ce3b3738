#pragma once

#include <functional>
#include <string>

#include "platform/machine_settings.h"
#include "platform/posix/sockets/calls.h"
#include "platform/posix/sockets/resolver.h"
#include "platform/posix/sockets/stream.h"

namespace velmora::sockets {

/// What the sockets of a program share. Outlives them.
struct Context {
    Machinery machinery;
    Resolver& resolver;
    Calls& calls;
    const MachineSettings& settings;
    const std::string& address;  ///< of the sockets that talk to peers; empty: any
    const std::function<void(const std::string& line)>& report;
};

}  // namespace velmora::sockets
