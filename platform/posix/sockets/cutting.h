#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/winsock.h"

namespace velmora::sockets {

/// How a stream of bytes is cut into data events.
class Cutting {
public:
    using Deliver = std::function<void(std::string event)>;

    virtual ~Cutting() = default;
    /// Takes what has arrived, and gives what makes up data events by now.
    virtual void arrived(std::string bytes, const Deliver& deliver) = 0;
    /// Nothing more arrives: gives what was held back.
    virtual void ended(const Deliver& deliver) = 0;
};

/// Data as it comes.
class Uncut : public Cutting {
public:
    void arrived(std::string bytes, const Deliver& deliver) override { deliver(std::move(bytes)); }
    void ended(const Deliver&) override {}
};

/// Every use of a stream cuts as data comes.
inline std::unique_ptr<Cutting> cuttingFor(StreamUse) {
    return std::make_unique<Uncut>();
}

}  // namespace velmora::sockets
