#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "hosts/hearing.h"
#include "platform/engine/instant_stage.h"
#include "tests/hearing/spoken.h"
#include "tests/support/waiting_loop.h"

namespace {

using namespace velmora;
using namespace velmora::test;
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
                           .microphone = [words] { return std::make_unique<Recorded>(spoken(words)); }});
        agent_.add(*hearing_);
        hearing_->onTip = [this](const HeardTip& tip) { tip_ = tip; };
        hearing_->onListening = [this](bool on, const std::string&) { listening_ = on; };
    }

    WaitingLoop waiting_;
    FirstChoice random_;
    std::optional<Hearing> hearing_;
    EngineAgent agent_{{.loop = waiting_.loop, .random = random_, .load = [](EngineAgent&) {
                            return Actor{"Merlin", std::make_unique<InstantStage>()};
                        }}};
    std::optional<HeardTip> tip_;
    std::optional<AgentUserInput> command_;
    std::optional<bool> listening_;
};

TEST_F(Listening, ACommandIsTipAndEventAndEndsTheListening) {
    hearThrough("open messenger");
    character().Listen(true);
    EXPECT_EQ(listening_, true);
    waiting_.until([this] { return command_ && listening_ == false; });
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
    waiting_.until([this] { return listening_ == false; });
    if (command_) {
        EXPECT_EQ(command_->Name, "");
        EXPECT_LE(command_->Confidence, -60);
    }
}

TEST_F(Listening, IsOverWhenTheCharacterIsToldSo) {
    hearThrough("open messenger");
    character().Listen(true);
    character().Listen(false);
    EXPECT_EQ(listening_, false);
    hearing_->hear("/nonexistent.wav", [this](const std::string& failure) { command_ = {"", failure, 0}; });
    waiting_.until([this] { return command_.has_value(); });
    EXPECT_THAT(command_->Voice, StartsWith("no such file"));
    EXPECT_FALSE(tip_);
}

}  // namespace
