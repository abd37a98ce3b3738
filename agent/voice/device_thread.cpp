#include "agent/voice/device_thread.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace agent {
namespace {

using Clock = std::chrono::steady_clock;

}  // namespace

struct DeviceThread::Shared {
    explicit Shared(int rate) : sampleRate(rate) {}

    const int sampleRate;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::int16_t> waiting;
    std::size_t beingWritten = 0;
    std::optional<Clock::time_point> allHeard;  // of what the device has taken; nothing before it opens
    bool dropping = false;
    bool quitting = false;
    bool lost = false;
    bool ended = false;
};

DeviceThread::DeviceThread(OpenSink open, int sampleRate) : shared_(std::make_shared<Shared>(sampleRate)) {
    std::thread([shared = shared_, open = std::move(open)] { run(shared, open); }).detach();
}

DeviceThread::~DeviceThread() {
    constexpr std::chrono::milliseconds patience{40};
    std::unique_lock lock(shared_->mutex);
    shared_->quitting = true;
    shared_->changed.notify_all();
    shared_->changed.wait_for(lock, patience, [this] { return shared_->ended; });
}

bool DeviceThread::write(std::span<const std::int16_t> samples) {
    const std::lock_guard lock(shared_->mutex);
    shared_->waiting.insert(shared_->waiting.end(), samples.begin(), samples.end());
    shared_->changed.notify_all();
    return !shared_->lost;
}

std::optional<std::chrono::microseconds> DeviceThread::delay() {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->lost) return std::nullopt;
    const auto samples = static_cast<std::int64_t>(shared_->waiting.size() + shared_->beingWritten);
    auto left = std::chrono::microseconds(samples * 1'000'000 / shared_->sampleRate);
    if (const auto heard = shared_->allHeard) {
        left += std::chrono::duration_cast<std::chrono::microseconds>(
            std::max(Clock::duration::zero(), *heard - Clock::now()));
    }
    return left;
}

void DeviceThread::drop(std::size_t) {
    const std::lock_guard lock(shared_->mutex);
    shared_->waiting.clear();
    shared_->dropping = true;
    shared_->changed.notify_all();
}

std::weak_ptr<const void> DeviceThread::life() const {
    return shared_;
}

void DeviceThread::run(const std::shared_ptr<Shared>& shared, const OpenSink& open) {
    const int blocksPerSecond = 100;
    std::unique_ptr<AudioSink> device = open(shared->sampleRate);
    std::vector<std::int16_t> block;
    std::unique_lock lock(shared->mutex);
    shared->lost = device == nullptr;
    while (!shared->lost) {
        shared->changed.wait(
            lock, [&] { return shared->quitting || shared->dropping || !shared->waiting.empty(); });
        if (std::exchange(shared->dropping, false)) {
            lock.unlock();
            device->drop(0);
            lock.lock();
            continue;
        }
        if (shared->quitting) break;
        const auto size =
            std::min(shared->waiting.size(), static_cast<std::size_t>(shared->sampleRate / blocksPerSecond));
        const auto end = shared->waiting.begin() + static_cast<std::ptrdiff_t>(size);
        block.assign(shared->waiting.begin(), end);
        shared->waiting.erase(shared->waiting.begin(), end);
        shared->beingWritten = size;
        lock.unlock();
        const bool written = device->write(block);
        const auto late = device->delay().value_or(std::chrono::microseconds::zero());
        lock.lock();
        shared->beingWritten = 0;
        shared->allHeard = Clock::now() + late;
        shared->lost = !written;
    }
    lock.unlock();
    device.reset();
    lock.lock();
    shared->ended = true;
    shared->changed.notify_all();
}

}  // namespace agent
