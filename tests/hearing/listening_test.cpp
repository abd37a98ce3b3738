#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "hosts/hearing.h"
#include "platform/engine/instant_stage.h"
#include "tests/hearing/spoken.h"
#include "tests/support/waiting_loop.h"

namespace {

using namespace velmora;
using namespace velmora::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class FirstChoice : public Random {
public:
    void Randomize() override {}
    double Rnd() override { return 0; }
};

class Recorded : public agent::AudioSource {
public:
    explicit Recorded(agent::Samples samples) : samples_(std::move(samples)) {}
    bool read(std::span<std::int16_t> samples) override {
        if (at_ + samples.size() > samples_.size()) return false;
        std::copy_n(samples_.begin() + static_cast<std::ptrdiff_t>(at_), samples.size(), samples.begin());
        at_ += samples.size();
        return true;
    }

private:
    agent::Samples samples_;
    std::size_t at_ = 0;
};

/// Writes down what a figure would react to.
class Seen : public AgentObserver {
public:
    void listening(bool on) override { steps.emplace_back(on ? "on" : "off"); }
    void speechBegun() override { steps.emplace_back("speech"); }
    void heard(const std::string&, const std::string& command, int) override { steps.push_back(command); }
    std::vector<std::string> steps;
};

/// A character with three commands, beside a microphone that hears these words.
class Listening : public testing::Test {
protected:
    Listening() {
        agent_.CharactersLoad("default");
        auto& commands = character().Commands();
        commands.Add("Check Mail", "Check your mail", "[check][e]mail", true, true);
        commands.Add("Messenger", "Open the messenger", "[open]messenger", true, false);
        commands.Add("Tip", "A tip", "tip", true, false);
        for (const char* name : {"Check Mail", "Messenger", "Tip"})
            commands.Item(name).ConfidenceText = "I didn't understand your request";
        agent_.Command = [this](const AgentUserInput& input) { command_ = input; };
    }

    AgentCharacter& character() { return agent_.CharactersItem("default"); }

    void hearThrough(const std::string& words) {
        hearing_.emplace(
            Hearing::Needs{.agent = agent_,
                           .post = [this](std::function<void()> call) { waiting_.post(std::move(call)); },
                           .microphone = [words]() -> std::unique_ptr<agent::AudioSource> {
                               if (words.empty()) return nullptr;
                               return std::make_unique<Recorded>(spoken(words));
                           }});
        agent_.add(*hearing_);
        agent_.add(seen_);
        hearing_->onTip = [this](const HeardTip& tip) { tip_ = tip; };
        hearing_->onEnd = [this](const std::string& failure) { end_ = failure; };
    }

    WaitingLoop waiting_;
    FirstChoice random_;
    std::optional<Hearing> hearing_;
    EngineAgent agent_{{.loop = waiting_.loop, .random = random_, .load = [](EngineAgent&) {
                            return Actor{"Merlin", std::make_unique<InstantStage>()};
                        }}};
    std::optional<HeardTip> tip_;
    std::optional<AgentUserInput> command_;
    std::optional<std::string> end_;
    Seen seen_;
};

TEST_F(Listening, ACommandIsTipAndEventAndEndsTheListening) {
    hearThrough("open messenger");
    character().Listen(true);
    waiting_.until([this] { return command_ && end_; });
    EXPECT_THAT(seen_.steps, ElementsAre("on", "speech", "off", "Messenger"));
    EXPECT_EQ(command_->Name, "Messenger");
    EXPECT_GT(command_->Confidence, -60);
    EXPECT_EQ(tip_->text, "open messenger");
    ASSERT_EQ(tip_->choices.size(), 2U);
    EXPECT_THAT(tip_->choices[0].caption, Not(StartsWith("Open the")));
}

TEST_F(Listening, ADisabledCommandIsNotHeard) {
    character().Commands().Item("Messenger").Enabled = false;
    hearThrough("open messenger");
    character().Listen(true);
    waiting_.until([this] { return end_.has_value(); });
    if (command_) {
        EXPECT_EQ(command_->Name, "");
        EXPECT_LE(command_->Confidence, -60);
    }
}

TEST_F(Listening, IsOverWhenTheCharacterIsToldSo) {
    hearThrough("open messenger");
    character().Listen(true);
    waiting_.until([this] { return !seen_.steps.empty(); });
    character().Listen(false);
    EXPECT_EQ(end_, "");
    EXPECT_THAT(seen_.steps, ElementsAre("on", "off"));
    hearing_->hear("/nonexistent.wav", [this](const std::string& failure) { command_ = {"", failure, 0}; });
    waiting_.until([this] { return command_.has_value(); });
    EXPECT_THAT(command_->Voice, StartsWith("no such file"));
    EXPECT_FALSE(tip_);
}

TEST_F(Listening, WithoutAMicrophoneItNeverBeginsAndTheEndTellsWhy) {
    hearThrough("");
    character().Listen(true);
    waiting_.until([this] { return end_.has_value(); });
    EXPECT_EQ(end_, "There is no microphone.");
    EXPECT_THAT(seen_.steps, IsEmpty());
}

TEST_F(Listening, AnotherListenBeginsAnewAndTheFigureGoesOnListening) {
    hearThrough("open messenger");
    character().Listen(true);
    waiting_.until([this] { return !seen_.steps.empty(); });
    hearing_->press();
    waiting_.until([this] { return end_.has_value(); });
    EXPECT_EQ(std::ranges::count(seen_.steps, "on"), 1);
    EXPECT_EQ(std::ranges::count(seen_.steps, "Messenger"), 1);
}

}  // namespace
