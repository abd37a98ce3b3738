#include "agent/performer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <cmath>
#include <limits>

#include "tests/agent/simulated_scene.h"

// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" [[gnu::weak]] std::size_t __sanitizer_get_current_allocated_bytes();  // of no header of ours

namespace {

using namespace agent;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Optional;
using testing::Pair;

class PerformerTest : public testing::Test {
protected:
    void SetUp() override {
        scene.ask(Action::show);
        scene.pass(600ms);
        ASSERT_TRUE(scene.shown);
    }

    static bool complete(const RequestHandle& request) { return request->state() == RequestState::complete; }

    SimulatedScene scene;
};

// Says nothing, until the test has it say something.
class ScriptedVoice : public Voice {
public:
    void speak(SpokenLine, VoiceEvents events) override { said = std::move(events); }
    void stop() override { ++stops; }
    VoiceEvents said;
    int stops = 0;
};

TEST_F(PerformerTest, AHeldPoseStaysUnderSpeechAndIsTakenBackByItsReturnBeforeAnythingElsePlays) {
    ScriptedVoice voice;
    scene.performer.setVoice(&voice);
    scene.play("Read");
    const auto line = scene.ask(Action::speak, "Once upon a time");
    scene.pass(1min);
    EXPECT_DOUBLE_EQ(scene.arm(), 60);
    voice.said.onMouth(Mouth::O);
    EXPECT_EQ(scene.pose[2].slot, 2U) << "the mouth moves over the pose that is held";
    EXPECT_DOUBLE_EQ(scene.arm(), 60);
    voice.said.onEnd();
    EXPECT_EQ(scene.pose[2].slot, 0U);
    scene.pass(1min);
    EXPECT_DOUBLE_EQ(scene.arm(), 60);

    const auto wave = scene.play("Wave");
    scene.pass(450ms);
    EXPECT_LT(scene.arm(), 12) << "the return is nearly over";
    EXPECT_EQ(wave->state(), RequestState::inProgress);
    scene.pass(5s);
    EXPECT_TRUE(complete(wave));
    EXPECT_DOUBLE_EQ(scene.arm(), 0);
}

TEST_F(PerformerTest, AnAnimationThatRepeatsDoesSoUntilTheNextRequestAndLeavesByItsExit) {
    const auto processing = scene.play("Processing");
    scene.pass(2min);
    EXPECT_TRUE(complete(processing));
    EXPECT_DOUBLE_EQ(scene.arm(), 40) << "its exit would have ended after two seconds";
    EXPECT_FALSE(scene.still);
    const auto rest = scene.play("RestPose");
    scene.pass(100ms);
    EXPECT_EQ(rest->state(), RequestState::inProgress);
    EXPECT_GT(scene.arm(), 20) << "on its way back";
    scene.pass(2s);
    EXPECT_TRUE(complete(rest));
    EXPECT_DOUBLE_EQ(scene.arm(), 0);
}

TEST_F(PerformerTest, NothingJumpsWhateverFollowsWhatAndWhenever) {
    const std::vector<std::string> clips = {"Read", "Wave", "Processing", "RestPose", "MoveUp", "ReadReturn"};
    for (const auto& first : clips) {
        for (const auto& second : clips) {
            for (const auto after : {0ms, 170ms, 700ms, 3000ms}) {
                scene.play(first);
                scene.pass(after);
                if (after == 170ms) scene.queue.stopAll();
                scene.play(second);
                scene.ask(Action::speak, "x");
                scene.pass(400ms);
                scene.queue.stopAll();
                scene.pass(after);
            }
        }
    }
    // The fastest of these clips turns the arm by 6 degrees a frame, and a join through 90 in 160 ms by 28.
    EXPECT_LT(scene.farthestTurn, 30);
}

TEST_F(PerformerTest, MovesWithTheAnimationOfItsDirectionAndEndsWhereItWasSent) {
    const auto left = scene.ask(Action::moveTo, {}, 700, 300);
    scene.pass(480ms);
    EXPECT_EQ(scene.corner, (Place{400, 300})) << "it gathers itself first";
    scene.pass(200ms);
    EXPECT_DOUBLE_EQ(scene.arm(), 40);
    EXPECT_GT(scene.corner.x, 400);
    scene.pass(200ms);
    EXPECT_TRUE(complete(left));
    EXPECT_EQ(scene.corner, (Place{700, 300}));
    scene.pass(1s);
    EXPECT_DOUBLE_EQ(scene.arm(), 0) << "landed";

    scene.ask(Action::moveTo, {}, 700, 600);  // there is no MoveDown: it slides as it stands
    scene.pass(150ms);
    EXPECT_GT(scene.corner.y, 300);
    EXPECT_DOUBLE_EQ(scene.arm(), 0);
}

TEST_F(PerformerTest, AbsurdPlacesEndAtTheEdgeAndAHandOnTheFigureEndsItsWay) {
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    for (const auto& [x, y, at] : {std::tuple{most, least, Place{900, 0}},
                                   {least, most, Place{0, 700}},
                                   {most, most, Place{900, 700}}}) {
        const auto request = scene.ask(Action::moveTo, {}, x, y);
        scene.pass(4s);
        EXPECT_TRUE(complete(request));
        EXPECT_EQ(scene.corner, at);
    }
    const auto cut = scene.ask(Action::moveTo, {}, 100, 700);
    scene.pass(700ms);
    scene.corner = {333, 444};
    scene.performer.moved();
    scene.pass(3s);
    EXPECT_TRUE(complete(cut));
    EXPECT_EQ(scene.corner, (Place{333, 444}));
    EXPECT_TRUE(scene.still);
}

TEST_F(PerformerTest, IdlesThroughThreeLevelsRarerAndRarerAndNeedsNoTimerInBetween) {
    // How often the arm went up to about so many degrees: 10, 20 and 30 are those of the levels.
    const auto count = [&](Milliseconds span) {
        std::map<long, int> peaks;
        double top = 0;
        for (const auto end = scene.now + span; scene.now < end;) {
            const auto step = scene.wakeAt.value() - scene.now;
            if (scene.still) {
                EXPECT_GE(step, 3s) << "nothing runs between two idle animations";
            }
            scene.pass(step);
            top = std::max(top, scene.arm());
            if (scene.still && top > 0) ++peaks[std::lround(std::exchange(top, 0) / 10) * 10];
        }
        return peaks;
    };
    EXPECT_THAT(count(2min), ElementsAre(Pair(10, 1)));
    EXPECT_THAT(count(5min), ElementsAre(Pair(20, 3)));
    EXPECT_THAT(count(30min), ElementsAre(Pair(30, 9)));
    scene.play("RestPose");
    scene.pass(1s);
    EXPECT_THAT(count(2min), ElementsAre(Pair(10, 1))) << "an order begins it anew";
}

TEST_F(PerformerTest, WhatItDoesOfItsOwnAccordGivesWayToAnOrder) {
    scene.performer.listening(true);
    scene.pass(100ms);
    EXPECT_FALSE(scene.still);
    const auto wave = scene.play("Wave");
    scene.pass(250ms);
    EXPECT_TRUE(complete(wave)) << "it has not waited for the end of StartListening";
    scene.pass(2s);
    scene.performer.speechHeard();
    scene.pass(50ms);
    EXPECT_FALSE(scene.still);
    scene.play("Read");
    scene.pass(1s);
    scene.performer.speechHeard();
    scene.pass(1s);
    EXPECT_DOUBLE_EQ(scene.arm(), 60) << "a held pose was asked for, and stays";
}

TEST_F(PerformerTest, EyesTurnALittleToThePointerUnlessTheFigureIsNotToIdle) {
    scene.pointer = Place{500, -40};
    scene.pass(20s);
    const double right = scene.pose[1][Channel::x];
    EXPECT_GT(right, 0.5);
    EXPECT_LT(right, 2);
    EXPECT_LT(scene.pose[1][Channel::y], 0);
    scene.performer.setHabits({.balloon = true, .autoHide = true, .idle = false});
    scene.pass(20s);
    EXPECT_DOUBLE_EQ(scene.pose[1][Channel::x], 0);
}

TEST_F(PerformerTest, TheBalloonRevealsWordsInTimeAndClosesAWhileAfterTheLast) {
    const auto line = scene.ask(Action::speak, "One two three");
    scene.pass(10ms);
    EXPECT_THAT(scene.balloon, Optional(std::string("One two three")));
    EXPECT_EQ(scene.revealed, 0U);
    scene.pass(300ms);
    EXPECT_EQ(scene.revealed, 1U);
    scene.pass(2s);
    EXPECT_TRUE(complete(line));
    EXPECT_TRUE(scene.balloon);
    scene.pass(3500ms);
    EXPECT_FALSE(scene.balloon);
}

TEST_F(PerformerTest, HabitsSayWhetherThereIsABalloonAndWhetherItStays) {
    struct Case {
        Habits habits;
        Action action;
        bool atOnce, later;
    };
    for (const auto& c : {Case{{.balloon = false}, Action::speak, false, false},
                          Case{{.balloon = false}, Action::think, true, false},
                          Case{{.autoHide = false}, Action::speak, true, true}}) {
        scene.performer.setHabits(c.habits);
        const auto line = scene.ask(c.action, "Hm");
        scene.pass(100ms);
        EXPECT_EQ(scene.balloon.has_value(), c.atOnce);
        scene.pass(1min);
        EXPECT_TRUE(complete(line));
        EXPECT_EQ(scene.balloon.has_value(), c.later);
    }
}

TEST_F(PerformerTest, SaysALongLinePartByPartWithoutLosingAWord) {
    ScriptedVoice voice;
    std::string longLine;
    for (int i = 0; i < 100'000; ++i) longLine.append("word").append(std::to_string(i)).append(" ");
    for (Voice* speaker : {static_cast<Voice*>(&voice), static_cast<Voice*>(nullptr)}) {
        scene.performer.setVoice(speaker);
        const auto line = scene.ask(Action::speak, longLine);
        scene.settle();
        std::string shown;
        std::size_t longest = 0;
        for (std::string last; line->state() == RequestState::inProgress;) {
            if (*scene.balloon != last) {
                last = *scene.balloon;
                shown += last;
                longest = std::max(longest, last.size());
            }
            if (speaker != nullptr) {
                voice.said.onEnd();
            } else {
                scene.pass(60s);
            }
        }
        EXPECT_EQ(shown, longLine);
        EXPECT_LT(longest, 10'000U);
    }
}

TEST_F(PerformerTest, ALineUnderWayEndsWhenItsVoiceIsTakenAway) {
    ScriptedVoice voice;
    scene.performer.setVoice(&voice);
    const auto line = scene.ask(Action::speak, "Good day");
    scene.settle();
    scene.performer.setVoice(nullptr);
    EXPECT_EQ(voice.stops, 1);
    EXPECT_TRUE(complete(line));
}

std::size_t memoryInUse() {
    // Under the sanitizer, the C library's own memory is not what is used.
    const auto sanitized = &__sanitizer_get_current_allocated_bytes;
    return sanitized != nullptr ? sanitized() : mallinfo2().uordblks;
}

TEST_F(PerformerTest, TenThousandRequestsLeaveNothingBehind) {
    const auto round = [this] {
        for (int i = 0; i < 500; ++i) {
            scene.play(i % 3 == 0 ? "Read" : "Processing");
            scene.ask(Action::speak, "Word \\Map=\"a\"=\"b\"\\|another");
            scene.ask(Action::moveTo, {}, i % 900, i % 700);
            scene.play("Missing");
            scene.ask(i % 2 == 0 ? Action::hide : Action::show);
            if (i % 7 == 0) scene.queue.stopAll();
            scene.pass(5s);
        }
        scene.pass(1min);
    };
    round();
    const auto before = memoryInUse();
    for (int i = 0; i < 3; ++i) round();
    EXPECT_GT(before, 0U);
    EXPECT_LT(memoryInUse(), before + 4096);
}

TEST(Animator, AReturnThatNamesAReturnOfItsOwnEndsAllTheSame) {
    SimulatedScene scene;
    scene.rig.clips[4].next = "Read";  // ReadReturn
    scene.ask(Action::show);
    scene.play("Read");
    const auto wave = scene.play("Wave");
    scene.pass(10s);
    EXPECT_EQ(wave->state(), RequestState::complete);
}

}  // namespace
