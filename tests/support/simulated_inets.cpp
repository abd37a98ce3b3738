#include "tests/support/simulated_inets.h"

#include <algorithm>

#include "base/failure.h"
#include "base/text.h"
#include "platform/web_address.h"

namespace velmora {
namespace {

constexpr std::chrono::seconds timeOut{60};

/// The states that every transfer passes before its answer is awaited.
constexpr TransferState lastBeforeAnswer = TransferState::requestSent;

class SimulatedInet final : public Inet {
public:
    SimulatedInet(Loop& loop, SimulatedWeb& web) : loop_(loop), web_(web) {}

    using Inet::OpenURL;
    std::string OpenURL(const std::string& url) override {
        if (StillExecuting()) throw Failure(errors::stillExecuting);
        const std::string address = webAddress(url);
        const auto transfer = std::make_shared<Transfer>();
        transfer_ = transfer;
        transfer->answer = web_.request(address);
        for (int state = 1; state <= static_cast<int>(lastBeforeAnswer); ++state)
            tell(transfer, static_cast<TransferState>(state));
        if (transfer->answer.hangs) transfer->answer.failure = errors::transferTimedOut;
        LoopTimer answered(loop_, [this, transfer] { finish(transfer); });
        answered.startOnce(transfer->answer.hangs ? timeOut : transfer->answer.delay);
        loop_.wait([&] { return transfer->told; });
        if (transfer->answer.failure != 0) throw Failure(transfer->answer.failure);
        return transfer->answer.body;
    }

    bool StillExecuting() const override { return transfer_ && !transfer_->over; }

    std::string GetHeader(std::string_view name) const override {
        if (!transfer_ || !transfer_->over || transfer_->answer.failure != 0) return {};
        const auto& headers = transfer_->answer.headers;
        const auto found = std::ranges::find_if(
            headers, [name](const auto& header) { return equalsIgnoringCase(header.first, name); });
        return found == headers.end() ? std::string() : found->second;
    }

private:
    struct Transfer {
        WebAnswer answer;
        bool over = false;
        bool told = false;  ///< all states have been raised
    };

    void raise(TransferState state) const {
        if (const auto handler = StateChanged) handler(state);
    }

    void tell(const std::shared_ptr<Transfer>& transfer, TransferState state) {
        loop_.post([this, transfer, state] {
            if (transfer == transfer_) raise(state);
        });
    }

    void finish(const std::shared_ptr<Transfer>& transfer) {
        const bool failed = transfer->answer.failure != 0;
        if (!failed) {
            tell(transfer, TransferState::receivingResponse);
            tell(transfer, TransferState::responseReceived);
        }
        loop_.post([this, transfer, failed] {
            transfer->over = true;
            transfer->told = true;
            raise(failed ? TransferState::error : TransferState::complete);
        });
    }

    Loop& loop_;
    SimulatedWeb& web_;
    std::shared_ptr<Transfer> transfer_;
};

}  // namespace

void SimulatedWeb::serve(const std::string& url, WebAnswer answer) {
    answers_[url].push_back(std::move(answer));
}

WebAnswer SimulatedWeb::request(const std::string& url) {
    requests_.push_back(url);
    const auto found = answers_.find(url);
    if (found == answers_.end()) return {.failure = errors::transferNotConnected};
    auto& queue = found->second;
    WebAnswer answer = queue.front();
    if (queue.size() > 1) queue.erase(queue.begin());
    return answer;
}

std::unique_ptr<Inet> SimulatedInets::create() {
    return std::make_unique<SimulatedInet>(loop_, web_);
}

}  // namespace velmora
