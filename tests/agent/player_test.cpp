#include "agent/voice/player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace {

using namespace agent;
using namespace std::chrono_literals;
using std::chrono::milliseconds;
using testing::SizeIs;

constexpr int rate = 1000;  // one sample a millisecond
constexpr milliseconds never = milliseconds::max();

struct Device {
    milliseconds latency{0};     // from being written to being heard, where nothing is before it
    milliseconds opens{0};       // nothing is heard before this moment
    milliseconds hangs = never;  // nothing is heard from this moment on
    milliseconds lost = never;   // from this moment on it takes and tells nothing
    bool swallows = false;       // claims that all has been heard
    bool keepsLatency = false;   // says so for ever
    bool timeless = false;       // can't tell what has been heard
    std::size_t breaksAt = std::numeric_limits<std::size_t>::max();
    std::size_t written = 0;
    std::optional<std::size_t> dropped = {};
};

class PlayerTest : public testing::Test {
protected:
    using Clock = std::chrono::steady_clock;

    // Plays at the pace of the test's clock.
    class Sink : public AudioSink {
    public:
        explicit Sink(PlayerTest& test) : test_(test) {}

        bool write(std::span<const std::int16_t> samples) override {
            Device& device = test_.device;
            if (device.written + samples.size() > device.breaksAt || test_.time >= device.lost) return false;
            ends_ = std::max({ends_, test_.time, device.opens}) + milliseconds(samples.size());
            device.written += samples.size();
            return true;
        }
        std::optional<std::chrono::microseconds> delay() override {
            const Device& device = test_.device;
            if (device.swallows) return 0ms;
            if (device.timeless || test_.time >= device.lost) return std::nullopt;
            const auto now = std::min(test_.time, device.hangs);
            const auto heard = ends_ + device.latency;
            // A guess at progress, while there is none.
            if (test_.time < device.opens) return ends_ - device.opens - 1ms;
            if (device.keepsLatency) return std::max(heard - now, device.latency);
            return std::max(heard - now, 0ms);
        }
        void drop(std::size_t unheard) override { test_.device.dropped = unheard; }

    private:
        PlayerTest& test_;
        milliseconds ends_{0};
    };

    Player makePlayer(bool silent = false) {
        return {silent ? nullptr : std::make_unique<Sink>(*this),
                {.sampleRate = rate,
                 .now = [this] { return Clock::time_point(time); },
                 .tell = [this](auto&) { told.push_back(time); }}};
    }

    // A second and a half, with three events.
    static Utterance speech() {
        return {std::vector<std::int16_t>(1500),
                {{0, std::size_t{0}}, {710, Mouth::A}, {1500, std::size_t{1}}}};
    }

    // Pumps when the player wants to be pumped, until it is done or this much time has gone.
    void run(Player& player, milliseconds atMost = 10s) {
        const auto end = time + atMost;
        while (!player.done() && time < end) {
            ++pumps;
            const auto next = std::chrono::ceil<milliseconds>(player.pump().time_since_epoch());
            ASSERT_GT(next, time);
            if (!player.done()) time = std::min(next, end);
        }
    }

    milliseconds time{5000};
    int pumps = 0;
    std::vector<milliseconds> told;  // when
    Device device;
};

TEST_F(PlayerTest, EachEventIsToldWhenItsSampleIsHeardWhateverTheDeviceDoes) {
    struct Case {
        const char* what;
        Device device;
        bool silent = false;
        milliseconds late{0};
    };
    const std::vector<Case> cases = {
        {"no device", {}, true},
        {"a device", {}},
        {"a device with some latency", {.latency = 120ms}, false, 120ms},
        {"one that opens late", {.opens = 5300ms}, false, 300ms},
        {"one that has silence to play first", {.opens = 7000ms}, false, 2000ms},
        {"one that is lost when it has begun late", {.opens = 7000ms, .lost = 7300ms}, false, 2000ms},
        {"one that is lost before it begins", {.opens = 7000ms, .lost = 6000ms}, false, 1000ms},
        {"one that takes all at once", {.swallows = true}, false, -40ms},
        {"one that breaks at once", {.breaksAt = 0}},
        {"one that breaks later", {.breaksAt = 600}},
        {"a file", {.timeless = true}},
        {"one that never begins", {.hangs = 0ms}},
        {"one that hangs in the middle", {.hangs = 5400ms}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        time = 5000ms;
        told.clear();
        device = c.device;
        auto player = makePlayer(c.silent);
        player.add(speech());
        player.close();
        run(player);
        ASSERT_THAT(told, SizeIs(3));
        const bool hangs = device.hangs != never;
        EXPECT_NEAR((told[0] - 5010ms - std::max(c.late, 0ms)).count(), 0, device.hangs == 0ms ? 2500 : 10);
        EXPECT_NEAR((told[1] - 5710ms - c.late).count(), 0, hangs ? 2500 : 5);
        EXPECT_NEAR((told[2] - 6500ms - c.late).count(), 0, hangs ? 1100 : 5);
    }
}

TEST_F(PlayerTest, ADeviceThatReportsItsLatencyForEverEndsTheLineAllTheSame) {
    device = {.latency = 100ms, .keepsLatency = true};
    auto player = makePlayer();
    player.add(speech());
    player.close();
    run(player);
    EXPECT_TRUE(player.done());
    EXPECT_LE(time, 7200ms);
}

TEST_F(PlayerTest, APieceThatComesLateGoesOnFromTheMomentItComes) {
    auto player = makePlayer();
    player.add(speech());
    run(player, 3s);
    EXPECT_FALSE(player.done());
    player.add(speech());
    player.close();
    run(player);
    EXPECT_NEAR((told.back() - 9500ms).count(), 0, 5);
}

TEST_F(PlayerTest, OnlyALittleIsHandedOutAheadOfWhatIsHeard) {
    auto player = makePlayer();
    player.add({std::vector<std::int16_t>(60'000), {}});
    run(player, 1s);
    EXPECT_GE(device.written, 1000U);
    EXPECT_LE(device.written, 1400U);
    EXPECT_NEAR(static_cast<double>(player.left().count()), 59e6, 0.1e6);
}

TEST_F(PlayerTest, AFileLetsItSleepBetweenTwoBlocks) {
    device = {.timeless = true};
    auto player = makePlayer();
    player.add({std::vector<std::int16_t>(10'000), {}});
    player.close();
    run(player, 15s);
    EXPECT_TRUE(player.done());
    EXPECT_LE(pumps, 100);
}

TEST_F(PlayerTest, StoppedItDropsWhatIsNotHeardAndTellsNothingMore) {
    auto player = makePlayer();
    player.add(speech());
    run(player, 600ms);
    player.stop();
    ASSERT_TRUE(device.dropped);
    EXPECT_NEAR(static_cast<double>(device.written - *device.dropped), 600, 5);
    run(player, 2s);
    EXPECT_THAT(told, SizeIs(1));
}

}  // namespace
