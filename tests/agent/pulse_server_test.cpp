#include "agent/voice/pulse_server.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "agent/voice/device_thread.h"
#include "tests/support/scratch_profile.h"
#include "tests/support/sound_server.h"

namespace {

using namespace agent;
using namespace std::chrono_literals;
using velmora::blackbox::ChildProcess;

constexpr int rate = 16000;

/// Lines of steady sound, for a sound server of the test's own.
class PulseServerTest : public testing::Test {
protected:
    static ChildProcess::Clock::time_point soon() { return ChildProcess::Clock::now() + 60s; }

    std::vector<std::string> environment() const { return profile.environment(); }

    std::unique_ptr<DeviceThread> begin(std::chrono::milliseconds length, std::int16_t loudness) {
        auto line = std::make_unique<DeviceThread>([this](int) { return pulse->open(rate); }, rate);
        line->write(std::vector(static_cast<std::size_t>(length.count()) * rate / 1000, loudness));
        return line;
    }

    /// Of a line of ten seconds.
    static bool isHeard(DeviceThread& line) { return line.delay().value_or(10s) < 9900ms; }

    static testing::AssertionResult comes(const std::function<bool()>& condition) {
        const auto giveUp = soon();
        while (!condition() && ChildProcess::Clock::now() < giveUp) std::this_thread::yield();
        return condition() ? testing::AssertionSuccess() : testing::AssertionFailure();
    }

    std::vector<std::int16_t> recorded() const {
        std::ifstream file(recording(), std::ios::binary);
        std::vector<std::int16_t> samples;
        for (std::int16_t sample = 0; file.read(reinterpret_cast<char*>(&sample), sizeof sample);)
            samples.push_back(sample);
        return samples;
    }
    std::string recording() const { return profile.folder() / "heard"; }

    velmora::blackbox::ScratchProfile profile;
    std::optional<velmora::blackbox::SoundServer> sound;
    std::shared_ptr<PulseServer> pulse =
        std::make_shared<PulseServer>("unix:" + (profile.folder().parent_path() / "pulse/native").string());
};

TEST_F(PulseServerTest, ALineIsHeardWholeAlsoInPlaceOfAnother) {
    constexpr std::int16_t quiet = 3000;
    constexpr std::int16_t loud = 9000;
    sound.emplace(environment(), soon());
    const ChildProcess recorder(
        {"sh", "-c",
         "exec parec --raw --format=s16le --channels=1 --rate=16000 --latency-msec=20 >" + recording()},
        environment());
    for (int i = 0; i < 3; ++i) {
        const auto dropped = begin(10s, quiet);
        ASSERT_TRUE(comes([&] { return isHeard(*dropped); }));
        dropped->drop(0);
    }
    const auto slowToLeave = begin(10s, quiet);
    ASSERT_TRUE(comes([&] { return isHeard(*slowToLeave); }));
    const auto begun = std::chrono::steady_clock::now();
    const auto line = begin(500ms, loud);
    ASSERT_TRUE(comes([&] { return line->delay() == 0ms; }));
    EXPECT_GE(std::chrono::steady_clock::now() - begun, 480ms);

    const auto isLoud = [](int sample) { return sample > (quiet + loud) / 2; };
    const auto isQuiet = [](int sample) { return std::abs(sample - quiet) < 100; };
    ASSERT_TRUE(comes([&] { return std::ranges::count_if(recorded(), isLoud) > rate / 2 * 97 / 100; }));
    ASSERT_TRUE(comes([&] { return std::abs(recorded().back()) < 100; }));
    const auto heard = recorded();
    EXPECT_LT(std::ranges::count_if(heard, isLoud), rate / 2 * 103 / 100);
    const auto after = std::ranges::find_if(heard, isLoud);
    EXPECT_LT(std::ranges::count_if(after, heard.end(), isQuiet), rate / 1000);
}

TEST_F(PulseServerTest, IsLostWithItsServerAndFoundAgain) {
    EXPECT_FALSE(pulse->connect());
    sound.emplace(environment(), soon());
    EXPECT_TRUE(pulse->connect());
    const auto cut = begin(10s, 1000);
    EXPECT_TRUE(comes([&] { return isHeard(*cut); }));
    sound.reset();
    EXPECT_TRUE(comes([&] { return !cut->delay(); }));
    EXPECT_FALSE(pulse->connect());
    sound.emplace(environment(), soon());
    const auto line = begin(100ms, 1000);
    EXPECT_TRUE(comes([&] { return line->delay() == 0ms; }));
}

}  // namespace
