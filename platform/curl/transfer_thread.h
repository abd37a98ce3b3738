#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/curl/cookie_jar.h"
#include "platform/curl/transfer.h"
#include "platform/files.h"

namespace velmora::curl {

/// The one thread in which all transfers of a program run side by side: resolving, encryption and unpacking
/// take none of the program's own time. It begins with the first transfer.
class TransferThread {
public:
    using Id = std::uint64_t;

    /// `files` is also used from the thread.
    TransferThread(Files& files, std::string jar, Limits limits);
    /// Drops what is under way, without waiting for any server.
    ~TransferThread();
    TransferThread(const TransferThread&) = delete;
    TransferThread& operator=(const TransferThread&) = delete;

    /// Begins a transfer; the listener is called in the thread.
    Id begin(std::string address, Listener listener);
    /// Drops a transfer. One that has finished, or is about to, is passed over.
    void cancel(Id id);

private:
    struct Order {
        Id id;
        std::string address;  ///< empty: cancel
        Listener listener;
    };

    void give(Order order);
    bool open();
    void run();
    bool takeOrders(CookieJar& jar);
    void finishDone(CookieJar& jar);
    void finishSilent();
    void finish(Id id, CURLcode code);
    int pause() const;

    Files& files_;
    const std::string jar_;
    const Limits limits_;
    Id lastId_ = 0;

    std::mutex mutex_;
    std::vector<Order> orders_;
    bool stopping_ = false;
    bool opening_ = false;  ///< a thread runs that has the library, or is loading it
    Multi multi_;

    std::map<Id, std::unique_ptr<Transfer>> transfers_;  // the thread's
    std::thread thread_;
};

}  // namespace velmora::curl
