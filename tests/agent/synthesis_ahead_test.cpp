#include "agent/voice/synthesis_ahead.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace agent;
using namespace std::chrono_literals;

// A megabyte of words.
std::shared_ptr<const SpokenLine> hugeLine() {
    std::string text;
    while (text.size() < 1'000'000) text += "On and on it goes. ";
    return std::make_shared<const SpokenLine>(parseSpeech(text));
}

// Counts the pieces and lets a test wait for them.
class Pieces {
public:
    std::function<void()> more() {
        return [this] {
            const std::lock_guard lock(mutex_);
            ++count_;
            changed_.notify_all();
        };
    }
    bool reach(int count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, 20s, [&] { return count_ >= count; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int count_ = 0;
};

// Each phrase is a second long; nothing is said.
class CountingSynthesizer : public Synthesizer {
public:
    int sampleRate() const override { return 1000; }
    PhraseLimits limits() const override { return {.first = 10, .later = 40}; }
    void speak(const Phrase& phrase, const VoiceParameters&, const SpeechReceiver& receiver) override {
        lengths.push_back(phrase.words.size());
        receiver.receive({std::vector<std::int16_t>(1000), {}});
    }
    std::vector<std::size_t> lengths;
};

TEST(SynthesisAhead, BeginsAPhraseOnceTheOneBeforeIsTaken) {
    CountingSynthesizer engine;
    Pieces pieces;
    {
        SynthesisAhead ahead(engine, hugeLine(), {}, pieces.more());
        for (int i = 1; i <= 3; ++i) {
            ASSERT_TRUE(pieces.reach(i));
            EXPECT_FALSE(ahead.finished());
            EXPECT_TRUE(ahead.take());
        }
    }
    EXPECT_LE(engine.lengths.size(), 4U);
    EXPECT_EQ(engine.lengths.front(), 2U);
    EXPECT_EQ(engine.lengths.at(1), 8U);
}

// A phrase without an end.
class EndlessSynthesizer : public CountingSynthesizer {
public:
    void speak(const Phrase&, const VoiceParameters&, const SpeechReceiver& receiver) override {
        for (; !receiver.stopped(); ++seconds) receiver.receive({std::vector<std::int16_t>(1000), {}});
    }
    int seconds = 0;
};

TEST(SynthesisAhead, KeepsAFewSecondsOfAPhraseHoweverLongItIs) {
    EndlessSynthesizer engine;
    Pieces pieces;
    {
        SynthesisAhead ahead(engine, hugeLine(), {}, pieces.more());
        ASSERT_TRUE(pieces.reach(4));
        EXPECT_TRUE(ahead.take());
    }
    EXPECT_LE(engine.seconds, 6);
}

// Asks whether to give up once it is released only.
class BusySynthesizer : public CountingSynthesizer {
public:
    void speak(const Phrase&, const VoiceParameters&, const SpeechReceiver&) override {
        released.get_future().wait();
    }
    std::promise<void> released;
};

TEST(SynthesisAhead, NobodyWaitsForALineThatIsGivenUpAndTheLineIsLetGo) {
    BusySynthesizer engine;
    Pieces pieces;
    auto line = hugeLine();
    const std::weak_ptr<const SpokenLine> held = line;
    SynthesisAhead ahead(engine, std::move(line), {}, pieces.more());
    ahead.giveUp();
    EXPECT_FALSE(ahead.ended());
    engine.released.set_value();
    ASSERT_TRUE(pieces.reach(1));
    EXPECT_TRUE(ahead.ended());
    EXPECT_TRUE(held.expired());
}

}  // namespace
