// How late the alarm is spoken, by the machine's own clock.

#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>
#include <vector>

#include "tests/bench/benchmark.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_profile.h"

namespace {

using namespace std::chrono_literals;
using namespace velmora::bench;
using namespace velmora::blackbox;
using Clock = ChildProcess::Clock;
using WallClock = std::chrono::system_clock;

constexpr int runs = 5;

std::string timeOfDay(WallClock::time_point time) {
    const std::time_t seconds = WallClock::to_time_t(time);
    std::tm parts{};
    localtime_r(&seconds, &parts);
    char text[16];
    std::strftime(text, sizeof text, "%H:%M:%S", &parts);
    return text;
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path& build) {
    const ScratchProfile profile;
    ChildProcess program({build / "apps/velmora", "--console", "--no-open", "--folder", profile.folder()},
                         profile.environment());
    program.readUntil("ready", Clock::now() + 30s);
    std::vector<double> late;
    for (int run = 0; run < runs; ++run) {
        const auto due = std::chrono::ceil<std::chrono::seconds>(WallClock::now() + 1500ms);
        program.write("set\tAlarmTPick\t" + timeOfDay(due) + "\nclick\tcmdAlarmSet\n");
        program.readUntil("play\tAnnounce", Clock::now() + 30s);
        late.push_back(std::chrono::duration<double>(WallClock::now() - due).count());
    }
    report("alarm behind its time", *std::ranges::max_element(late), "s",
           "the latest of " + std::to_string(runs));
}
