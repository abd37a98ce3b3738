#pragma once

#include <chrono>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/inet.h"
#include "platform/loop.h"

namespace velmora {

/// What a simulated server gives to one request.
struct WebAnswer {
    std::string body{};
    std::vector<std::pair<std::string, std::string>> headers{};
    std::chrono::milliseconds delay{0};  ///< from the request to the whole answer
    long failure = 0;                    ///< fails with this number instead, after the delay
    bool hangs = false;                  ///< never comes: the transfer fails with 35761 after a minute
};

/// The servers that the programs of a simulated machine find. An address that nobody serves can't be reached.
class SimulatedWeb {
public:
    /// Answers given for the same address come one after the other; the last one stays.
    void serve(const std::string& url, WebAnswer answer);
    /// Text alone, at once.
    void serve(const std::string& url, std::string body) { serve(url, WebAnswer{.body = std::move(body)}); }

    /// Requests since the last call, in order, each as it goes out.
    std::vector<std::string> takeRequests() { return std::exchange(requests_, {}); }

    /// Notes the request and finds the answer.
    WebAnswer request(const std::string& url);

private:
    std::map<std::string, std::vector<WebAnswer>, std::less<>> answers_;
    std::vector<std::string> requests_;
};

/// The transfer controls of one program on the simulated machine. Time is the loop's.
class SimulatedInets : public Inets {
public:
    SimulatedInets(Loop& loop, SimulatedWeb& web) : loop_(loop), web_(web) {}
    std::unique_ptr<Inet> create() override;

private:
    Loop& loop_;
    SimulatedWeb& web_;
};

}  // namespace velmora
