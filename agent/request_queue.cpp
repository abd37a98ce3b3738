#include "agent/request_queue.h"

#include <utility>

namespace agent {

RequestQueue::RequestQueue(Stage& stage, Post post)
    : stage_(stage), post_(std::move(post)), self_(std::make_shared<RequestQueue*>(this)) {}

RequestQueue::~RequestQueue() {
    *self_ = nullptr;
    if (current_) stage_.cut();
}

RequestHandle RequestQueue::ask(Order order) {
    auto request = std::make_shared<Request>();
    waiting_.push_back({std::move(order), request});
    askForTurn();
    return request;
}

void RequestQueue::stopAll() {
    auto dropped = std::exchange(waiting_, {});
    if (current_) {
        stage_.cut();
        finish(RequestState::interrupted);
    }
    for (const auto& entry : dropped) end(entry, RequestState::interrupted);
}

void RequestQueue::askForTurn() {
    if (turnPosted_ || current_ || waiting_.empty()) return;
    turnPosted_ = true;
    post_([self = self_] {
        if (*self) (*self)->beginNext();
    });
}

void RequestQueue::beginNext() {
    turnPosted_ = false;
    if (current_ || waiting_.empty()) return;
    current_ = std::move(waiting_.front());
    waiting_.pop_front();
    ++run_;
    if (auto request = current_->request.lock()) request->state_ = RequestState::inProgress;
    begin(Order(current_->order));
}

void RequestQueue::begin(const Order& order) {
    if (!canPerform(order)) return finish(RequestState::failed);
    const bool shows = order.action == Action::show;
    if (shows || order.action == Action::hide) {
        if (visible_ == shows) return finish(RequestState::complete);
        visible_ = shows;
    }
    stage_.perform(order, [self = self_, run = run_](bool performed) {
        if (*self == nullptr || (*self)->run_ != run || !(*self)->current_) return;
        (*self)->finish(performed ? RequestState::complete : RequestState::failed);
    });
}

bool RequestQueue::canPerform(const Order& order) const {
    switch (order.action) {
        case Action::show:
        case Action::hide:
        case Action::moveTo:
            return true;
        case Action::play:
            return visible_ && stage_.has(order.text);
        case Action::speak:
        case Action::think:
            return visible_;
    }
    return false;
}

void RequestQueue::finish(RequestState state) {
    const auto ended = std::exchange(current_, std::nullopt);
    ++run_;
    end(*ended, state);
    askForTurn();
}

void RequestQueue::end(const Entry& entry, RequestState state) {
    const auto request = entry.request.lock();
    if (!request) return;
    request->state_ = state;
    request->failure_ = state == RequestState::failed ? refused : 0;
    post_([self = self_, request] {
        if (*self == nullptr || !(*self)->onComplete) return;
        const auto tell = (*self)->onComplete;
        tell(request);
    });
}

}  // namespace agent
