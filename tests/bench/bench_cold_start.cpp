// How long the program takes from its start to its first wait for input, beside a Qt program that does
// nothing.

#include "tests/bench/benchmark.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_profile.h"

namespace {

using namespace std::chrono_literals;
using namespace velmora::bench;
using namespace velmora::blackbox;

constexpr int runs = 15;
constexpr int warmUps = 2;

double millisecondsToReady(const std::vector<std::string>& command,
                           const std::vector<std::string>& environment) {
    const auto start = ChildProcess::Clock::now();
    ChildProcess process(command, environment);
    process.readUntil("ready", start + 30s);
    const std::chrono::duration<double, std::milli> taken = ChildProcess::Clock::now() - start;
    process.closeInput();
    process.waitForEnd(ChildProcess::Clock::now() + 30s);
    return taken.count();
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path& build) {
    const ScratchProfile profile;
    const std::vector<std::string> program{build / "apps/velmora", "--console", "--folder", profile.folder()};
    const std::vector<std::string> empty{build / "tests/bench/empty_application", "-platform", "offscreen"};
    const auto environment = profile.environment();

    std::vector<double> programTimes;
    std::vector<double> emptyTimes;
    // In turn, so that what else the machine does meets both alike.
    for (int run = -warmUps; run < runs; ++run) {
        const double programTime = millisecondsToReady(program, environment);
        const double emptyTime = millisecondsToReady(empty, environment);
        if (run < 0) continue;
        programTimes.push_back(programTime);
        emptyTimes.push_back(emptyTime);
    }

    const std::string how = "median of " + std::to_string(runs) + ", start to \"ready\"";
    report("start in the terminal, 15 settings", median(programTimes), "ms", how);
    report("start of an empty QApplication, offscreen", median(emptyTimes), "ms", how);
    report("start in the terminal / empty QApplication", median(programTimes) / median(emptyTimes), "x",
           "ratio of the medians");
}
