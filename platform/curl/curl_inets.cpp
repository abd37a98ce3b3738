#include "platform/curl/curl_inets.h"

#include <algorithm>
#include <utility>

#include "base/failure.h"
#include "base/text.h"
#include "platform/curl/transfer_thread.h"
#include "platform/web_address.h"

namespace velmora::curl {
namespace {

using Post = std::function<void(std::function<void()>)>;

class CurlInet final : public Inet {
public:
    CurlInet(Loop& loop, Post post, TransferThread& thread)
        : loop_(loop), postFromThread_(std::move(post)), thread_(thread) {}
    CurlInet(const CurlInet&) = delete;
    CurlInet& operator=(const CurlInet&) = delete;
    ~CurlInet() override {
        if (call_) call_->owner = nullptr;
    }

    using Inet::OpenURL;
    std::string OpenURL(const std::string& url) override;

    bool StillExecuting() const override { return call_ && !call_->over; }

    std::string GetHeader(std::string_view name) const override {
        if (!call_) return {};
        const auto& headers = call_->outcome.headers;
        const auto found = std::ranges::find_if(
            headers, [name](const auto& header) { return equalsIgnoringCase(header.first, name); });
        return found == headers.end() ? std::string() : found->second;
    }

private:
    /// One `OpenURL`. Calls that are still on their way to the loop keep it.
    struct Call {
        CurlInet* owner;
        bool over = false;
        Outcome outcome{};
    };

    /// What each of the two means to the call, in the program's thread.
    static void tell(Call& call, TransferState state) {
        if (!call.owner || call.owner->call_.get() != &call) return;
        if (const auto handler = call.owner->StateChanged) handler(state);
    }
    static void end(Call& call, Outcome outcome) {
        call.outcome = std::move(outcome);
        call.over = true;
        tell(call, call.outcome.failure == 0 ? TransferState::complete : TransferState::error);
    }

    Listener listener(const std::shared_ptr<Call>& call) const;

    Loop& loop_;
    Post postFromThread_;
    TransferThread& thread_;
    std::shared_ptr<Call> call_;
};

Listener CurlInet::listener(const std::shared_ptr<Call>& call) const {
    return {.reached = [post = postFromThread_,
                        call](TransferState state) { post([call, state] { tell(*call, state); }); },
            .finished =
                [post = postFromThread_, call](Outcome outcome) {
                    const auto whole = std::make_shared<Outcome>(std::move(outcome));  // copied with the call
                    post([call, whole] { end(*call, std::move(*whole)); });
                }};
}

std::string CurlInet::OpenURL(const std::string& url) {
    if (StillExecuting()) throw Failure(errors::stillExecuting);
    const std::string address = webAddress(url);
    const auto call = std::make_shared<Call>(Call{.owner = this});
    call_ = call;

    const auto id = thread_.begin(address, listener(call));
    try {
        loop_.wait([&] { return call->over; });
    } catch (...) {
        thread_.cancel(id);
        call->over = true;
        call->owner = nullptr;
        throw;
    }
    if (call->outcome.failure != 0) throw Failure(call->outcome.failure);
    return std::move(call->outcome.body);
}

}  // namespace

CurlInets::CurlInets(Needs needs)
    : loop_(needs.loop),
      postFromThread_(std::move(needs.postFromThread)),
      thread_(std::make_unique<TransferThread>(needs.files, path(needs.folder, CookieJar::fileName),
                                               needs.limits)) {}

CurlInets::~CurlInets() = default;

std::unique_ptr<Inet> CurlInets::create() {
    return std::make_unique<CurlInet>(loop_, postFromThread_, *thread_);
}

}  // namespace velmora::curl
