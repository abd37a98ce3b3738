#include "platform/curl/transfer_thread.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "base/failure.h"

namespace velmora::curl {

using std::chrono::milliseconds;

TransferThread::TransferThread(Files& files, std::string jar, Limits limits)
    : files_(files), jar_(std::move(jar)), limits_(limits) {}

TransferThread::~TransferThread() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        if (multi_) curlLibrary().multiWakeup(multi_.get());
    }
    if (thread_.joinable()) thread_.join();
    if (!multi_) return;
    multi_.reset();
    curlLibrary().globalCleanup();
}

TransferThread::Id TransferThread::begin(std::string address, Listener listener) {
    const Id id = ++lastId_;
    give({id, std::move(address), std::move(listener)});
    return id;
}

void TransferThread::cancel(Id id) {
    give({id, {}, {}});
}

void TransferThread::give(Order order) {
    const std::lock_guard lock(mutex_);
    orders_.push_back(std::move(order));
    if (multi_) {
        curlLibrary().multiWakeup(multi_.get());
    } else if (!opening_) {
        opening_ = true;
        if (thread_.joinable()) thread_.join();  // it had no library
        thread_ = std::thread([this] { run(); });
    }
}

bool TransferThread::open() {
    std::vector<Order> refused;
    try {
        curlLibrary().globalInit(CURL_GLOBAL_DEFAULT);  // counts its calls
        Multi multi(curlLibrary().multiInit());
        const std::lock_guard lock(mutex_);
        multi_ = std::move(multi);
        return true;
    } catch (const std::runtime_error&) {
        const std::lock_guard lock(mutex_);
        refused = std::exchange(orders_, {});
        opening_ = false;
    }
    Outcome outcome;
    outcome.failure = errors::transferNotConnected;
    for (const Order& order : refused) {
        if (order.listener.finished) order.listener.finished(outcome);
    }
    return false;
}

void TransferThread::run() {
    if (!open()) return;
    CookieJar jar(files_, jar_);
    while (takeOrders(jar)) {
        int running = 0;
        curlLibrary().multiPerform(multi_.get(), &running);
        finishDone(jar);
        finishSilent();
        curlLibrary().multiPoll(multi_.get(), nullptr, 0, pause(), nullptr);
    }
    for (const auto& [id, transfer] : transfers_)
        curlLibrary().multiRemoveHandle(multi_.get(), transfer->handle());
    transfers_.clear();
    jar.save();
}

bool TransferThread::takeOrders(CookieJar& jar) {
    std::vector<Order> orders;
    {
        const std::lock_guard lock(mutex_);
        if (stopping_) return false;
        orders = std::exchange(orders_, {});
    }
    for (Order& order : orders) {
        if (!order.address.empty()) {
            auto transfer =
                std::make_unique<Transfer>(order.address, jar.share(), limits_, std::move(order.listener));
            curlLibrary().multiAddHandle(multi_.get(), transfer->handle());
            transfers_.emplace(order.id, std::move(transfer));
        } else if (const auto found = transfers_.find(order.id); found != transfers_.end()) {
            curlLibrary().multiRemoveHandle(multi_.get(), found->second->handle());
            transfers_.erase(found);
        }
    }
    return true;
}

void TransferThread::finishDone(CookieJar& jar) {
    int left = 0;
    while (const CURLMsg* message = curlLibrary().multiInfoRead(multi_.get(), &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        const CURLcode code = message->data.result;  // the message goes with the handle
        const auto done = std::ranges::find_if(
            transfers_,
            [handle = message->easy_handle](const auto& entry) { return entry.second->handle() == handle; });
        if (done == transfers_.end()) continue;
        jar.save();  // before anyone who waited for the answer could look
        finish(done->first, code);
    }
}

void TransferThread::finishSilent() {
    std::vector<Id> silent;
    for (const auto& [id, transfer] : transfers_) {
        if (transfer->silentUntil() <= Transfer::Clock::now()) silent.push_back(id);
    }
    for (const Id id : silent) finish(id, CURLE_OPERATION_TIMEDOUT);
}

void TransferThread::finish(Id id, CURLcode code) {
    const auto entry = transfers_.extract(id);
    curlLibrary().multiRemoveHandle(multi_.get(), entry.mapped()->handle());
    entry.mapped()->finish(code);
}

int TransferThread::pause() const {
    constexpr milliseconds longest = std::chrono::hours(1);
    milliseconds pause = longest;
    for (const auto& [id, transfer] : transfers_) {
        const auto left = std::chrono::ceil<milliseconds>(transfer->silentUntil() - Transfer::Clock::now());
        pause = std::clamp(left, milliseconds(0), pause);
    }
    return static_cast<int>(pause.count());
}

}  // namespace velmora::curl
