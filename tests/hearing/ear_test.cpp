#include "agent/hearing/ear.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include "tests/hearing/spoken.h"

namespace {

using namespace agent;
using namespace velmora::test;
using namespace std::chrono_literals;
using testing::ElementsAre;

const std::vector<EarCommand> commands{{"Check Mail", "[check][e]mail"}, {"Messenger", "[open]messenger"}};

/// A microphone that gives what was recorded, and then is gone.
class Recorded : public AudioSource {
public:
    explicit Recorded(Samples samples) : samples_(std::move(samples)) {}
    bool read(std::span<std::int16_t> samples) override {
        if (at_ + samples.size() > samples_.size()) return false;
        std::copy_n(samples_.begin() + static_cast<std::ptrdiff_t>(at_), samples.size(), samples.begin());
        at_ += samples.size();
        return true;
    }

private:
    Samples samples_;
    std::size_t at_ = 0;
};

class Ears : public testing::Test {
protected:
    Ear::Needs needs(Samples recorded) {
        return {.post =
                    [this](std::function<void()> step) {
                        const std::lock_guard lock(mutex_);
                        steps_.push_back(std::move(step));
                        arrived_.notify_all();
                    },
                .microphone = [recorded = std::move(recorded)]() -> std::unique_ptr<AudioSource> {
                    if (recorded.empty()) return nullptr;
                    return std::make_unique<Recorded>(recorded);
                }};
    }

    EarEvents events() {
        return {.onBegin = [this] { names_.emplace_back("(begin)"); },
                .onSpeech = [this] { names_.emplace_back("(speech)"); },
                .onPhrase = [this](const EarPhrase& phrase) { names_.push_back(phrase.name); },
                .onEnd = [this](const std::string& failure) { end_ = failure; }};
    }

    void runToEnd() {
        while (!end_) {
            std::unique_lock lock(mutex_);
            ASSERT_TRUE(arrived_.wait_for(lock, 60s, [this] { return !steps_.empty(); }));
            const auto step = std::move(steps_.front());
            steps_.pop_front();
            lock.unlock();
            step();
        }
    }

    std::vector<std::string> names_;
    std::optional<std::string> end_;

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::function<void()>> steps_;
};

TEST_F(Ears, ListeningEndsWithTheFirstPhrase) {
    Samples both = spoken("open messenger");
    const Samples second = spoken("check mail");
    both.insert(both.end(), second.begin(), second.end());
    Ear ear(needs(std::move(both)));
    ear.listen(commands, events());
    runToEnd();
    EXPECT_THAT(names_, ElementsAre("(begin)", "(speech)", "Messenger"));
    EXPECT_EQ(end_, "");
}

TEST_F(Ears, TellsWhyThereIsNothingToHear) {
    const struct {
        Samples recorded;
        const char* failure;
        std::size_t begun;
    } cases[] = {
        {{}, "There is no microphone.", 0},
        {Samples(1), "The microphone is gone.", 0},
        {Samples(hearingRate), "The microphone is gone.", 1},
        {Samples(std::size_t{11} * hearingRate), "", 1},  // nobody speaks
    };
    for (const auto& c : cases) {
        Ear ear(needs(c.recorded));
        end_.reset();
        names_.clear();
        ear.listen(commands, events());
        runToEnd();
        EXPECT_EQ(end_, c.failure);
        EXPECT_EQ(names_.size(), c.begun) << c.failure;
    }
}

TEST_F(Ears, HearAgainAfterTheyHaveGivenBackWhatTheyKnew) {
    Ear::Needs forgetful = needs(spoken("check mail"));
    forgetful.patience = 0ms;
    Ear ear(std::move(forgetful));
    for (int time = 0; time < 2; ++time) {
        end_.reset();
        names_.clear();
        ear.listen(commands, events());
        runToEnd();
        EXPECT_THAT(names_, ElementsAre("(begin)", "(speech)", "Check Mail"));
    }
}

TEST_F(Ears, WhatWasBegunEarlierIsNotHeardOfAgain) {
    Ear ear(needs(spoken("check mail")));
    bool heard = false;
    ear.listen(commands, {.onPhrase = [&](const EarPhrase&) { heard = true; },
                          .onEnd = [&](const std::string&) { heard = true; }});
    ear.hear("/nonexistent.wav", commands, events());
    runToEnd();
    EXPECT_FALSE(heard);
    EXPECT_THAT(*end_, testing::HasSubstr("no such file"));
}

}  // namespace
