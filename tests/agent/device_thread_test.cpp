#include "agent/voice/device_thread.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

#include "tests/agent/hanging_device.h"

namespace {

using namespace agent;
using namespace std::chrono_literals;

TEST(DeviceThread, NothingWaitsForADeviceThatHangsAndItIsClosedOnceItComesRound) {
    std::promise<void> release;
    std::promise<void> closed;
    const std::shared_future<void> released = release.get_future().share();
    std::weak_ptr<const void> life;
    {
        DeviceThread device(
            [&](int) { return std::unique_ptr<AudioDevice>(std::make_unique<HangingDevice>(released)); },
            1000);
        life = device.life();
        EXPECT_TRUE(device.write(std::vector<std::int16_t>(500)));
        EXPECT_EQ(device.delay(), 500ms);
        device.drop(500);
    }
    EXPECT_FALSE(life.expired());
    release.set_value();
    const auto giveUp = std::chrono::steady_clock::now() + 20s;
    while (!life.expired() && std::chrono::steady_clock::now() < giveUp) std::this_thread::yield();
    EXPECT_TRUE(life.expired());
}

TEST(DeviceThread, LeavesTheTimeToTheClockWhereThereIsNoDevice) {
    DeviceThread device([](int) { return nullptr; }, 1000);
    device.write(std::vector<std::int16_t>(500));
    const auto giveUp = std::chrono::steady_clock::now() + 20s;
    while (device.delay() && std::chrono::steady_clock::now() < giveUp) std::this_thread::yield();
    EXPECT_EQ(device.delay(), std::nullopt);
}

}  // namespace
