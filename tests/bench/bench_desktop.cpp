// What the program costs on a desktop: how soon the character speaks, memory, and processor time in motion
// and at rest.

#include <chrono>

#include "tests/bench/benchmark.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_profile.h"
#include "tests/support/x_screen.h"

namespace {

using namespace std::chrono_literals;
using namespace velmora::bench;
using namespace velmora::blackbox;
using Clock = ChildProcess::Clock;

constexpr int runs = 5;
constexpr auto restTime = 30s;

/// Processor time used while `span` passes or happens, in percent of one core.
template <typename Span>
double processorPercent(const ChildProcess& process, const Span& span) {
    const auto before = process.processorTime();
    const auto start = Clock::now();
    span();
    const std::chrono::duration<double> passed = Clock::now() - start;
    return 100 * (process.processorTime() - before) / passed;
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path& build) {
    std::vector<double> milliseconds;
    std::vector<double> megabytes;
    std::vector<double> speakingPercent;
    double restPercent = 0;

    for (int run = 0; run < runs; ++run) {
        const ScratchProfile profile;
        XScreen screen(profile);
        const auto start = Clock::now();
        ChildProcess program({build / "apps/velmora", "--no-open", "--folder", profile.folder()},
                             profile.environment({screen.display(), "QT_QPA_PLATFORM=xcb"}));
        const auto balloon = screen.waitForPopup(start + 30s);
        milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        speakingPercent.push_back(
            processorPercent(program, [&] { screen.waitForEndOf(balloon, Clock::now() + 60s); }));
        megabytes.push_back(program.residentMegabytes());
        if (run + 1 == runs) restPercent = processorPercent(program, [&] { program.letRun(restTime); });
    }

    const std::string median5 = "median of " + std::to_string(runs);
    report("start on a desktop until the balloon is up", median(milliseconds), "ms",
           median5 + ", Xvfb and openbox");
    report("resident memory after the greeting", median(megabytes), "MB", median5 + ", VmRSS");
    report("processor time while it greets", median(speakingPercent), "%",
           median5 + ", of a core, balloon up to balloon gone");
    report("processor time after the greeting", restPercent, "%",
           "of a core, over 30 s, idle animations included");
}
