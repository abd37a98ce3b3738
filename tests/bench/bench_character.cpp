// What a figure costs on a desktop: processor time while it moves, at two sizes, and while it stands there,
// and the memory that many requests leave behind.

#include <sys/resource.h>

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

#include "agent/qt/qt_character.h"
#include "agent/request_queue.h"
#include "tests/bench/benchmark.h"
#include "tests/support/scratch_profile.h"
#include "tests/support/x_screen.h"

namespace {

using namespace std::chrono_literals;
using namespace velmora;
using agent::Action;

constexpr auto moving = 10s;
constexpr auto standing = 50s;  // shorter than the first idle animation takes to come
constexpr int rounds = 10'000;

void letRun(std::chrono::milliseconds span) {
    QEventLoop loop;
    QTimer::singleShot(span, &loop, &QEventLoop::quit);
    loop.exec();
}

std::chrono::duration<double> processorTime() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto time = [](const timeval& part) {
        return std::chrono::seconds(part.tv_sec) + std::chrono::microseconds(part.tv_usec);
    };
    return time(used.ru_utime) + time(used.ru_stime);
}

// In percent of a core.
double processorPercent(std::chrono::milliseconds span) {
    const auto before = processorTime();
    letRun(span);
    return 100 * (processorTime() - before) / std::chrono::duration<double>(span);
}

double residentMegabytes() {
    std::ifstream status("/proc/self/statm");
    long pages = 0;
    status >> pages >> pages;
    return static_cast<double>(pages) * 4096 / 1e6;
}

void measure(agent::QtCharacter& figure) {
    agent::RequestQueue queue(figure, agent::postTo(figure));
    queue.ask({Action::show, {}});
    letRun(4s);
    for (const int percent : {100, 300}) {
        figure.setScale(percent / 100.0);
        queue.ask({Action::play, "Processing"});
        letRun(1s);
        bench::report("processor time in motion, at " + std::to_string(percent) + " %",
                      processorPercent(moving), "%", "of a core, 30 pictures a second for 10 s, Xvfb");
    }
    figure.setScale(1);
    queue.ask({Action::play, "RestPose"});
    letRun(4s);
    bench::report("processor time between idle animations", processorPercent(standing), "%",
                  "of a core, over 50 s, blinking included");

    const auto round = [&](int count) {
        for (int i = 0; i < count; ++i) {
            queue.ask({Action::play, i % 2 == 0 ? "Read" : "Processing"});
            queue.ask({Action::think, "A thought of six words, unfinished"});
            queue.ask({Action::moveTo, {}, i % 800, i % 600});
            if (i % 3 == 0) queue.stopAll();
            QCoreApplication::processEvents();
        }
        queue.stopAll();
        letRun(1s);
    };
    round(rounds / 10);
    const double before = residentMegabytes();
    round(rounds);
    bench::report("memory that 30,000 requests leave behind", residentMegabytes() - before, "MB",
                  "VmRSS, after 3,000 others");
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path&) {
    const blackbox::ScratchProfile profile;
    const blackbox::XScreen screen(profile);
    setenv("DISPLAY", screen.display().substr(screen.display().find('=') + 1).c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    int argc = 1;
    char name[] = "bench_character";
    char* argv[] = {name, nullptr};
    const QApplication application(argc, argv);
    auto loaded = agent::QtCharacter::load(CHARACTERS, "Merlin", {});
    if (const auto* reason = std::get_if<std::string>(&loaded)) throw std::runtime_error(*reason);
    measure(*std::get<std::unique_ptr<agent::QtCharacter>>(loaded));
}
