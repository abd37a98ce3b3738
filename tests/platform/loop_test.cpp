#include "platform/loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace velmora {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

/// Time that passes only while the loop sleeps.
class ManualHost : public LoopHost {
public:
    milliseconds elapsed() const override { return now; }
    void serve(std::optional<milliseconds> atMost) override {
        if (atMost == milliseconds(0)) return;
        ASSERT_TRUE(atMost) << "the loop would sleep for ever";
        now += *atMost;
        sleeps.push_back(*atMost);
    }

    milliseconds now{0};
    std::vector<milliseconds> sleeps;
};

class LoopTest : public testing::Test {
protected:
    void runFor(milliseconds span) {
        bool over = false;
        LoopTimer stop(loop, [&] { over = true; });
        stop.startOnce(span);
        loop.run([&] { return over; });
    }

    ManualHost host;
    Loop loop{host};
    std::vector<int> order;
};

TEST_F(LoopTest, TimersRunInTheOrderTheyAreDueThenOfCreation) {
    LoopTimer late(loop, [&] { order.push_back(1); });
    LoopTimer second(loop, [&] { order.push_back(2); });
    LoopTimer third(loop, [&] { order.push_back(3); });
    late.startOnce(milliseconds(30));
    third.startOnce(milliseconds(20));
    second.startOnce(milliseconds(20));
    runFor(milliseconds(50));
    EXPECT_THAT(order, ElementsAre(2, 3, 1));
}

TEST_F(LoopTest, RepeatingTimerKeepsItsBeatAndDoesNotMakeUpForAPause) {
    std::vector<milliseconds> ticks;
    LoopTimer timer(loop, [&] {
        ticks.push_back(loop.now());
        if (ticks.size() == 1) host.now += milliseconds(250);  // the handler is slow
    });
    timer.start(milliseconds(100));
    runFor(milliseconds(500));
    EXPECT_THAT(ticks,
                ElementsAre(milliseconds(100), milliseconds(350), milliseconds(400), milliseconds(500)));
}

TEST_F(LoopTest, HandlerOnTheStackIsNotEnteredAgainEvenIfItRestartsItsTimer) {
    int depth = 0;
    LoopTimer timer(loop, [&] {
        ASSERT_EQ(++depth, 1);
        timer.stop();
        timer.start(milliseconds(10));
        const auto until = loop.now() + milliseconds(100);
        LoopTimer other(loop, [] {});
        other.start(milliseconds(25));
        loop.wait([&] { return loop.now() >= until; });
        --depth;
        order.push_back(1);
    });
    timer.start(milliseconds(10));
    runFor(milliseconds(250));
    EXPECT_GE(order.size(), 2U);
}

TEST_F(LoopTest, TimerMayDestroyItselfInItsHandler) {
    std::unique_ptr<LoopTimer> timer;
    timer = std::make_unique<LoopTimer>(loop, [&] {
        order.push_back(1);
        timer.reset();
    });
    timer->start(milliseconds(10));
    runFor(milliseconds(50));
    EXPECT_THAT(order, ElementsAre(1));
}

TEST_F(LoopTest, SkippedTimeRunsWhatFallsDueInItAndWhatThatPosts) {
    LoopTimer timer(loop, [&] {
        order.push_back(static_cast<int>(loop.now().count()));
        loop.post([&] { order.push_back(0); });
    });
    timer.start(milliseconds(1000));
    loop.skip(milliseconds(2500));
    EXPECT_THAT(order, ElementsAre(1000, 0, 2000, 0));
    EXPECT_EQ(loop.now(), milliseconds(2500));
    EXPECT_TRUE(host.sleeps.empty());
}

TEST_F(LoopTest, SkipInsideASkipTakesNothingFromTheRestOfIt) {
    LoopTimer timer(loop, [&] { loop.skip(milliseconds(5000)); });
    timer.startOnce(milliseconds(1000));
    loop.skip(milliseconds(3000));
    EXPECT_EQ(loop.now(), milliseconds(8000));
}

TEST_F(LoopTest, EndOfTheProgramUnwindsEveryWaitAndNoHandlerHoldsItUp) {
    bool wentOn = false;
    loop.post([&] {
        passOver([&] { loop.wait([] { return false; }); }, [&] { wentOn = true; });
        wentOn = true;
    });
    loop.post([&] { loop.end(); });
    loop.run();
    EXPECT_FALSE(wentOn);
    EXPECT_EQ(loop.depth(), 0);
    EXPECT_THROW(loop.doEvents(), Ended);
}

TEST_F(LoopTest, FailureThatNothingCaughtEndsItsTurnOnly) {
    std::vector<long> failures;
    loop.onFailure = [&](const Failure& failure) { failures.push_back(failure.number); };
    loop.post([] { throw Failure(errors::typeMismatch); });
    loop.post([&] { order.push_back(1); });
    loop.run([&] { return !order.empty(); });
    EXPECT_THAT(failures, ElementsAre(errors::typeMismatch));
}

TEST_F(LoopTest, RetiredObjectLivesUntilNoTurnIsOnTheStack) {
    auto object = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = object;
    LoopTimer tick(loop, [] {});
    tick.start(milliseconds(10));
    loop.post([&] {
        loop.retire(std::move(object));
        const auto until = loop.now() + milliseconds(50);
        loop.wait([&] { return loop.now() >= until; });
        EXPECT_FALSE(watched.expired());
    });
    runFor(milliseconds(100));
    EXPECT_TRUE(watched.expired());
}

TEST_F(LoopTest, LoopThatPollsSleepsBetweenItsLooks) {
    loop.post([&] {
        const auto until = loop.now() + milliseconds(200);
        while (loop.now() < until) loop.doEvents();
        order.push_back(1);
    });
    loop.run([&] { return !order.empty(); });
    EXPECT_EQ(host.sleeps.size(), 4U);
}

}  // namespace
}  // namespace velmora
