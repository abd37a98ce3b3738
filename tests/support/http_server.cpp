#include "tests/support/http_server.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>

namespace velmora {

bool HttpConnection::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const auto sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void HttpConnection::answer(std::string_view body, std::string_view headers, std::string_view status) const {
    std::string head = "HTTP/1.1 ";
    head.append(status).append("\r\nContent-Length: ").append(std::to_string(body.size()));
    head.append("\r\n").append(headers).append("\r\n");
    if (send(head)) send(body);
}

void HttpConnection::hold() const {
    char byte = 0;
    while (::recv(socket_, &byte, 1, 0) > 0) {
    }
}

void HttpConnection::reset() const {
    const linger now{.l_onoff = 1, .l_linger = 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &now, sizeof now);
}

HttpServer::HttpServer() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_, generic, size) != 0 || ::listen(listener_, SOMAXCONN) != 0 ||
        ::getsockname(listener_, generic, &size) != 0)
        throw std::system_error(errno, std::generic_category());
    port_ = ntohs(address.sin_port);
    accepting_ = std::thread([this] { accept(); });
}

HttpServer::~HttpServer() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        for (const int socket : open_) ::shutdown(socket, SHUT_RDWR);
    }
    ::shutdown(listener_, SHUT_RDWR);
    accepting_.join();
    for (auto& conversation : conversations_) conversation.join();
    ::close(listener_);
}

std::string HttpServer::url(std::string_view path) const {
    return std::string("http://127.0.0.1:").append(std::to_string(port_)).append(path);
}

std::vector<std::string> HttpServer::requests() {
    const std::lock_guard lock(mutex_);
    return requests_;
}

void HttpServer::accept() {
    for (;;) {
        const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) return;
        const std::lock_guard lock(mutex_);
        if (stopping_) {
            ::close(socket);
            return;
        }
        open_.push_back(socket);
        conversations_.emplace_back([this, socket] { converse(socket); });
    }
}

void HttpServer::converse(int socket) {
    std::string request;
    char byte = 0;
    while (!request.ends_with("\r\n\r\n") && ::recv(socket, &byte, 1, 0) == 1) request += byte;
    {
        const std::lock_guard lock(mutex_);
        if (request.ends_with("\r\n\r\n")) requests_.push_back(request);
    }
    if (request.starts_with("GET ")) {
        const auto target = std::string_view(request).substr(4, request.find_first_of(" ?", 4) - 4);
        const auto page = pages_.find(std::string(target));
        const HttpConnection connection(socket);
        if (page == pages_.end()) {
            connection.answer("nothing here", {}, "404 Not Found");
        } else {
            page->second(connection);
        }
    }
    const std::lock_guard lock(mutex_);
    std::erase(open_, socket);
    ::close(socket);
}

}  // namespace velmora
