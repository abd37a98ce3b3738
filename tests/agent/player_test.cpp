#include "agent/voice/player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

namespace {

using namespace agent;
using testing::ElementsAre;

// A device that is heard a second late, at a thousand samples a second, says so for ever, and breaks when
// told to.
class FakeSink : public AudioSink {
public:
    struct Record {
        std::size_t written = 0;
        std::size_t late = 0;
        std::size_t breaksAt = 1'000'000;
        int drops = 0;
    };
    explicit FakeSink(Record& record) : record_(record) {}

    bool write(std::span<const std::int16_t> samples) override {
        if (record_.written + samples.size() > record_.breaksAt) return false;
        record_.written += samples.size();
        record_.late = 1000;
        return true;
    }
    std::chrono::microseconds delay() override { return std::chrono::milliseconds(record_.late); }
    void drop() override { ++record_.drops; }

private:
    Record& record_;
};

class PlayerTest : public testing::Test {
protected:
    PlayerTest() {
        host.stopped = [this] { return stopped; };
        host.tell = [this](const SpeechEvent& event) { told.push_back(std::get<std::size_t>(event.what)); };
        host.wait = [this](auto time) { waits.push_back(time); };
    }
    Player makePlayer() { return {std::make_unique<FakeSink>(device), host}; }

    static Utterance twoWords() {
        return {std::vector<std::int16_t>(1500), {{0, std::size_t{0}}, {900, std::size_t{1}}}};
    }

    bool stopped = false;
    std::vector<std::size_t> told;
    std::vector<std::chrono::steady_clock::time_point> waits;
    FakeSink::Record device;
    PlayerHost host{.sampleRate = 1000, .stopped = {}, .wait = {}, .tell = {}};
};

TEST_F(PlayerTest, TellsAWordWhenItIsHeardAndNotWhenItIsWritten) {
    auto player = makePlayer();
    player.play(twoWords());
    EXPECT_EQ(device.written, 1500U);
    EXPECT_THAT(told, ElementsAre(0));
    player.finish();
    EXPECT_THAT(told, ElementsAre(0, 1));
    ASSERT_EQ(waits.size(), 2U);
    EXPECT_NEAR(std::chrono::duration<double>(waits[1] - waits[0]).count(), 0.6, 1e-6);
}

TEST_F(PlayerTest, StoppedItDropsWhatIsNotHeardAndTellsNothingMore) {
    auto player = makePlayer();
    player.play(twoWords());
    stopped = true;
    player.play(twoWords());
    player.finish();
    EXPECT_EQ(device.written, 1500U);
    EXPECT_EQ(device.drops, 1);
    EXPECT_THAT(told, ElementsAre(0));
}

TEST_F(PlayerTest, GoesOnInSilenceWhenTheDeviceIsLost) {
    device.breaksAt = 1440;
    auto player = makePlayer();
    player.play(twoWords());
    player.finish();
    EXPECT_THAT(told, ElementsAre(0, 1));
}

}  // namespace
