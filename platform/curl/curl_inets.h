#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/curl/transfer.h"
#include "platform/files.h"
#include "platform/inet.h"
#include "platform/loop.h"

namespace velmora::curl {

class TransferThread;

/// Transfer controls on libcurl. Their transfers run in a thread of their own, cookies included; only the
/// finished answer is handed over. Nothing of the environment is read: no proxy, no settings of other
/// programs. An answer of more than `Limits::body` bytes fails.
class CurlInets : public Inets {
public:
    struct Needs {
        Loop& loop;
        /// Runs a call in the loop, from any thread, in order.
        std::function<void(std::function<void()>)> postFromThread;
        Files& files;        ///< used from both threads
        std::string folder;  ///< the application folder, in which the cookies are kept
        Limits limits{};
    };
    explicit CurlInets(Needs needs);
    ~CurlInets() override;

    std::unique_ptr<Inet> create() override;

private:
    Loop& loop_;
    std::function<void(std::function<void()>)> postFromThread_;
    std::unique_ptr<TransferThread> thread_;
};

}  // namespace velmora::curl
