#include "agent/request_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "agent/bytes.h"

namespace {

using namespace agent;
using testing::ElementsAre;
using testing::IsEmpty;

class FakeStage : public Stage {
public:
    void perform(const Order& order, std::function<void(bool)> done) override {
        performed.push_back(order.text);
        if (atOnce) return done(true);
        pending = std::move(done);
    }
    void cut() override { ++cuts; }
    bool has(std::string_view animation) const override { return sameName(animation, "Wave"); }

    std::vector<std::string> performed;
    std::function<void(bool)> pending;
    bool atOnce = true;
    int cuts = 0;
};

class RequestQueueTest : public testing::Test {
protected:
    RequestQueueTest() {
        queue->onComplete = [this](const RequestHandle& request) { ended.push_back(request); };
    }

    bool turn() {
        if (turns.empty()) return false;
        const auto step = std::move(turns.front());
        turns.pop_front();
        step();
        return true;
    }
    void run() {
        while (turn()) {
        }
    }
    RequestHandle ask(Action action, std::string text = {}) { return queue->ask({action, std::move(text)}); }

    FakeStage stage;
    std::deque<std::function<void()>> turns;
    std::unique_ptr<RequestQueue> queue =
        std::make_unique<RequestQueue>(stage, [this](auto step) { turns.push_back(std::move(step)); });
    std::vector<RequestHandle> ended;
};

TEST_F(RequestQueueTest, PerformsInOrderOneAtATimeAndNothingInsideTheCall) {
    ask(Action::show, "first");
    ask(Action::speak, "second");
    EXPECT_THAT(stage.performed, IsEmpty());
    EXPECT_FALSE(queue->visible());
    stage.atOnce = false;
    run();
    EXPECT_TRUE(queue->visible());
    EXPECT_THAT(stage.performed, ElementsAre("first"));
    stage.pending(true);
    EXPECT_THAT(stage.performed, ElementsAre("first"));
    run();
    EXPECT_THAT(stage.performed, ElementsAre("first", "second"));
}

TEST_F(RequestQueueTest, AHiddenCharacterRefusesAllButShowHideAndMoveAndTheQueueGoesOn) {
    struct Case {
        Action action;
        const char* text;
        RequestState end;
    };
    const std::vector<Case> cases = {
        {Action::play, "wave", RequestState::failed},    {Action::speak, "Hi", RequestState::failed},
        {Action::think, "Hm", RequestState::failed},     {Action::moveTo, "move", RequestState::complete},
        {Action::hide, "hide", RequestState::complete},  {Action::show, "show", RequestState::complete},
        {Action::show, "again", RequestState::complete}, {Action::play, "WAVE", RequestState::complete},
        {Action::play, "Juggle", RequestState::failed},  {Action::speak, "Hi", RequestState::complete}};
    std::vector<RequestHandle> handles;
    handles.reserve(cases.size());
    for (const auto& c : cases) handles.push_back(ask(c.action, c.text));
    run();
    ASSERT_EQ(ended, handles);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(handles[i]->state(), cases[i].end) << i;
        EXPECT_EQ(handles[i]->failure(), cases[i].end == RequestState::failed ? 0x80042003L : 0) << i;
    }
    EXPECT_THAT(stage.performed, ElementsAre("move", "show", "WAVE", "Hi"));
}

TEST_F(RequestQueueTest, OnlyTheEndOfAKeptRequestIsTold) {
    ask(Action::show);
    const auto kept = ask(Action::speak, "kept");
    auto dropped = ask(Action::speak, "dropped under way");
    ask(Action::speak, "dropped at once");
    stage.atOnce = false;
    run();
    stage.pending(true);
    run();
    stage.pending(true);
    run();
    dropped.reset();
    stage.pending(true);
    run();
    stage.pending(true);
    run();
    EXPECT_THAT(ended, ElementsAre(kept));
}

TEST_F(RequestQueueTest, StopAllInterruptsTheRequestUnderWayAndAllBehindItAndALateDoneCountsForNothing) {
    ask(Action::show);
    run();
    stage.atOnce = false;
    const auto underWay = ask(Action::speak, "long");
    const auto waiting = ask(Action::hide);
    run();
    const auto late = stage.pending;
    queue->stopAll();
    EXPECT_EQ(stage.cuts, 1);
    EXPECT_THAT(ended, IsEmpty());
    const auto next = ask(Action::speak, "next");
    run();
    late(true);
    run();
    EXPECT_EQ(underWay->state(), RequestState::interrupted);
    EXPECT_EQ(waiting->state(), RequestState::interrupted);
    EXPECT_EQ(next->state(), RequestState::inProgress);
    EXPECT_THAT(ended, ElementsAre(underWay, waiting));
    EXPECT_TRUE(queue->visible());
}

TEST_F(RequestQueueTest, AStageThatCannotPerformMakesTheRequestFail) {
    ask(Action::show);
    run();
    stage.atOnce = false;
    const auto request = ask(Action::speak, "Hi");
    run();
    stage.pending(false);
    EXPECT_EQ(request->state(), RequestState::failed);
    EXPECT_EQ(request->failure(), 0x80042003L);
}

TEST_F(RequestQueueTest, AHandlerMayAskAndStopAndDestroyTheQueue) {
    const auto first = ask(Action::show);
    std::vector<RequestHandle> answers;
    queue->onComplete = [&](const RequestHandle&) {
        answers.push_back(ask(Action::speak, "answer"));
        queue->stopAll();
        if (answers.size() == 2) queue.reset();
    };
    run();
    EXPECT_EQ(queue, nullptr);
    EXPECT_THAT(stage.performed, ElementsAre(""));
}

TEST_F(RequestQueueTest, NothingHappensAfterTheQueueIsGone) {
    ask(Action::show);
    run();
    stage.atOnce = false;
    const auto request = ask(Action::speak, "Hi");
    turn();
    ask(Action::hide);
    queue.reset();
    EXPECT_EQ(stage.cuts, 1);
    stage.pending(true);
    run();
    EXPECT_THAT(ended, IsEmpty());
}

}  // namespace
