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
    Playback playback{};        // of what the device has taken
    Clock::time_point asked{};  // when that was so
    bool news = false;
    bool dropping = false;
    bool quitting = false;
    bool lost = false;
    bool ended = false;
};

DeviceThread::DeviceThread(OpenDevice open, int sampleRate) : shared_(std::make_shared<Shared>(sampleRate)) {
    std::thread([shared = shared_, open = std::move(open)]() mutable {
        run(shared, std::move(open));
    }).detach();
}

DeviceThread::~DeviceThread() {
    constexpr std::chrono::milliseconds patience{15};
    std::unique_lock lock(shared_->mutex);
    shared_->quitting = true;
    shared_->changed.notify_all();
    shared_->changed.wait_for(lock, patience, [this] { return shared_->ended; });
}

bool DeviceThread::write(std::span<const std::int16_t> samples) {
    const std::lock_guard lock(shared_->mutex);
    shared_->waiting.insert(shared_->waiting.end(), samples.begin(), samples.end());
    shared_->news = true;
    shared_->changed.notify_all();
    return !shared_->lost;
}

std::optional<std::chrono::microseconds> DeviceThread::delay() {
    const std::lock_guard lock(shared_->mutex);
    if (shared_->lost) return std::nullopt;
    auto left = shared_->playback.left;
    if (shared_->playback.moving)
        left -= std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - shared_->asked);
    const auto samples = static_cast<std::int64_t>(shared_->waiting.size());
    return std::max(left, std::chrono::microseconds::zero()) +
           std::chrono::microseconds(samples * 1'000'000 / shared_->sampleRate);
}

void DeviceThread::drop(std::size_t) {
    const std::lock_guard lock(shared_->mutex);
    shared_->waiting.clear();
    shared_->dropping = shared_->news = true;
    shared_->changed.notify_all();
}

std::weak_ptr<const void> DeviceThread::life() const {
    return shared_;
}

void DeviceThread::run(const std::shared_ptr<Shared>& shared, OpenDevice open) {
    constexpr std::chrono::milliseconds pause{10};
    std::unique_ptr<AudioDevice> device = open(shared->sampleRate);
    std::vector<std::int16_t> block;
    std::unique_lock lock(shared->mutex);
    shared->lost = device == nullptr;
    while (!shared->lost) {
        const bool busy = !shared->waiting.empty() || shared->playback.left.count() > 0;
        shared->changed.wait_for(lock, busy ? pause : std::chrono::hours(1),
                                 [&] { return std::exchange(shared->news, false) || shared->quitting; });
        const bool dropping = std::exchange(shared->dropping, false);
        if (shared->quitting && !dropping) break;
        block.assign(shared->waiting.begin(), shared->waiting.end());
        lock.unlock();
        if (dropping) device->drop();
        const auto taken = device->write(block);
        const Playback playback = device->playback();
        const Clock::time_point asked = Clock::now();
        lock.lock();
        shared->lost = !taken;
        shared->playback = playback;
        shared->asked = asked;
        if (taken && !shared->dropping) {
            const auto end = shared->waiting.begin() + static_cast<std::ptrdiff_t>(*taken);
            shared->waiting.erase(shared->waiting.begin(), end);
        }
    }
    lock.unlock();
    device.reset();
    open = nullptr;
    lock.lock();
    shared->ended = true;
    shared->changed.notify_all();
}

}  // namespace agent
