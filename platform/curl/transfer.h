#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/curl/curl_handles.h"
#include "platform/inet.h"

namespace velmora::curl {

/// What a transfer came to.
struct Outcome {
    long failure = 0;  ///< its number; 0: none
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;  ///< of the last answer, none after a failure
};

/// Hears of a transfer, in the thread that runs it.
struct Listener {
    std::function<void(TransferState)> reached;  ///< ascending; neither `complete` nor `error`
    std::function<void(Outcome)> finished;       ///< once, last; not after a cancel
};

/// How much a transfer may take.
struct Limits {
    std::size_t body = 64'000'000;              ///< bytes, unpacked
    std::chrono::milliseconds silence{60'000};  ///< without a byte either way
};

/// One `GET`. Belongs to one thread.
class Transfer {
public:
    using Clock = std::chrono::steady_clock;

    /// `address` as `webAddress` gives it; `share` outlives the transfer.
    Transfer(const std::string& address, CURLSH* share, Limits limits, Listener listener);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    CURL* handle() const { return easy_.get(); }

    /// When it has been silent for too long, unless a byte comes.
    Clock::time_point silentUntil() const { return lastByte_ + limits_.silence; }

    /// The library is done with it, in this way.
    void finish(CURLcode code);

private:
    static std::size_t onBody(char* data, std::size_t size, std::size_t count, void* transfer);
    static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* transfer);
    static int onResolve(void* resolver, void* reserved, void* transfer);
    static curl_socket_t onSocket(void* transfer, curlsocktype purpose, curl_sockaddr* address);
    static int onRequest(void* transfer, char* remote, char* local, int remotePort, int localPort);
    static int onTraffic(CURL* easy, curl_infotype kind, char* data, std::size_t size, void* transfer);

    void reach(TransferState state);
    bool takeBody(std::string_view data);
    void takeHeaders();

    Easy easy_;
    Limits limits_;
    Listener listener_;
    Outcome outcome_;
    TransferState state_ = TransferState::none;
    std::size_t headerBytes_ = 0;
    Clock::time_point lastByte_ = Clock::now();
};

}  // namespace velmora::curl
