#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/posix/sockets/address.h"

namespace velmora::sockets {

/// Finds the addresses of names, in the background: the system may take its time.
class Resolver {
public:
    using Answer = std::function<void(std::vector<Address> addresses)>;

    Resolver();
    /// Stops.
    ~Resolver() { stop(); }
    Resolver(const Resolver&) = delete;
    Resolver& operator=(const Resolver&) = delete;

    /// Looks the name up in that family (or `AF_UNSPEC`). The answer comes in a thread of its own, in the
    /// order in which the system would try the addresses; it is empty if the name is not known.
    void find(const std::string& name, std::uint16_t port, int family, const Answer& answer);

    /// Forgets all questions; no answer is under way after that, and none comes.
    void stop();

private:
    struct Asker;
    std::shared_ptr<Asker> asker_;
};

}  // namespace velmora::sockets
