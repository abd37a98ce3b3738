#include "platform/posix/sockets/resolver.h"

#include <netdb.h>

#include <cstring>
#include <mutex>
#include <system_error>
#include <thread>

namespace velmora::sockets {
namespace {

std::vector<Address> ask(const std::string& name, std::uint16_t port, int family) {
    if (name.find('\0') != std::string::npos) return {};
    addrinfo hints{};
    hints.ai_family = family;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* first = nullptr;
    if (getaddrinfo(name.c_str(), std::to_string(port).c_str(), &hints, &first) != 0) return {};
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> all(first, freeaddrinfo);
    std::vector<Address> addresses;
    for (const addrinfo* entry = first; entry != nullptr; entry = entry->ai_next) {
        sockaddr_storage raw{};
        std::memcpy(&raw, entry->ai_addr, entry->ai_addrlen);
        addresses.emplace_back(raw, entry->ai_addrlen);
    }
    return addresses;
}

}  // namespace

/// What a question that is still out finds of its asker.
struct Resolver::Asker {
    std::mutex mutex;
    bool here = true;
};

Resolver::Resolver() : asker_(std::make_shared<Asker>()) {}

void Resolver::stop() {
    const std::lock_guard lock(asker_->mutex);
    asker_->here = false;
}

void Resolver::find(const std::string& name, std::uint16_t port, int family, const Answer& answer) {
    const auto question = [asker = asker_, name, port, family, answer] {
        const std::vector<Address> addresses = ask(name, port, family);
        const std::lock_guard lock(asker->mutex);
        if (asker->here) answer(addresses);
    };
    try {
        // A look-up can't be cut off, so nobody waits for it to end.
        std::thread(question).detach();
    } catch (const std::system_error&) {
        answer({});
    }
}

}  // namespace velmora::sockets
