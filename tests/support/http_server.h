#pragma once

#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace velmora {

/// The server's end of a connection on which one request has been read.
class HttpConnection {
public:
    explicit HttpConnection(int socket) : socket_(socket) {}

    /// Sends the bytes as they are; false once the client has gone.
    bool send(std::string_view bytes) const;
    /// A whole answer, with its length. `headers`: lines, each with its CRLF.
    void answer(std::string_view body, std::string_view headers = {},
                std::string_view status = "200 OK") const;
    /// Waits until the client, or the server's end, closes the connection.
    void hold() const;
    /// The client sees a reset instead of an end when the connection closes.
    void reset() const;

private:
    int socket_;
};

/// A small HTTP server on the loopback that does what a test says, for a request each connection; each in a
/// thread of its own. Its end closes all connections.
class HttpServer {
public:
    using Page = std::function<void(const HttpConnection&)>;

    HttpServer();
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// What a request for the path gets, up to its query; 404 for the others. Set before the first request.
    /// The page runs in a thread of the server, which may outlast the body of a test: it owns what it uses.
    void page(const std::string& path, Page page) { pages_[path] = std::move(page); }

    /// Address of a path, "http://127.0.0.1:PORT/...".
    std::string url(std::string_view path) const;

    /// What has been asked for, headers included.
    std::vector<std::string> requests();

private:
    void accept();
    void converse(int socket);

    std::map<std::string, Page> pages_;
    int listener_;
    int port_ = 0;
    std::mutex mutex_;
    bool stopping_ = false;
    std::vector<std::string> requests_;
    std::vector<int> open_;
    std::list<std::thread> conversations_;
    std::thread accepting_;
};

}  // namespace velmora
