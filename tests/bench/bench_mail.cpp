// What a mail check costs beside other clients of the same mailbox, and what a large message costs.

#include <sys/resource.h>
#include <time.h>

#include <QCoreApplication>
#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "hosts/machine.h"
#include "platform/console/terminal_ports.h"
#include "platform/engine/engine_agent.h"
#include "platform/engine/instant_stage.h"
#include "program/program.h"
#include "tests/bench/benchmark.h"
#include "tests/support/child_process.h"
#include "tests/support/dovecot.h"
#include "tests/support/scratch_profile.h"

namespace {

using namespace std::chrono_literals;
using namespace velmora;
using namespace velmora::bench;
using namespace velmora::blackbox;
using Clock = ChildProcess::Clock;
using Seconds = std::chrono::duration<double>;

constexpr int messages = 1000;
constexpr int messageSize = 4'000;
constexpr int runs = 5;

std::string message(const std::string& subject, std::size_t size) {
    const std::string line(76, 'x');
    std::string text =
        "From: bob@example\r\nSubject: " + subject + "\r\nMessage-ID: <" + subject + "@example>\r\n\r\n";
    text.reserve(size + line.size());
    while (text.size() < size) text.append(line).append("\r\n");
    return text;
}

struct Cost {
    double milliseconds;
    double processorMilliseconds;
};

Cost median(const std::vector<Cost>& costs) {
    std::vector<double> walls;
    std::vector<double> processor;
    for (const Cost& cost : costs) {
        walls.push_back(cost.milliseconds);
        processor.push_back(cost.processorMilliseconds);
    }
    return {velmora::bench::median(walls), velmora::bench::median(processor)};
}

Seconds childrensProcessorTime() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) {
        return Seconds(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// The whole life of another client.
Cost costOf(const std::vector<std::string>& command, const std::vector<std::string>& environment) {
    const auto before = childrensProcessorTime();
    const auto start = Clock::now();
    ChildProcess client(command, environment);
    if (client.waitForEnd(start + 120s) != 0) throw std::runtime_error(command[0] + " failed");
    return {Seconds(Clock::now() - start).count() * 1e3, (childrensProcessorTime() - before).count() * 1e3};
}

/// The program, in its terminal, with an account at the server.
class Reader {
public:
    explicit Reader(const Dovecot& server) {
        std::ofstream settings(profile_.folder() / "Velmora.ini");
        settings << "[Options]\r\nDefault=True\r\n[User]\r\nName=Anna\r\n[EMail]\r\nInterval=0\r\nServer="
                 << server.address() << "\r\nUser=" << Dovecot::user << "\r\n";
        settings.close();
        process = std::make_unique<ChildProcess>(
            std::vector<std::string>{program, "--console", "--no-open", "--folder", profile_.folder()},
            profile_.environment());
        process->readUntil("ready", Clock::now() + 30s);
        process->write(std::string("set\tFrmOptions.TxtPass\t") + Dovecot::password + "\n");
        process->readUntil("ok", Clock::now() + 30s);
    }

    /// Checks until the message of this subject has been told of.
    Cost check(const std::string& subject) {
        const auto before = process->processorTime();
        const auto start = Clock::now();
        process->write("menu\tmnuCheckMail\n");
        process->readUntil("speak\tSubject " + subject + "\tSubject " + subject, start + 120s);
        const auto end = Clock::now();
        return {Seconds(end - start).count() * 1e3, (process->processorTime() - before).count() * 1e3};
    }

    static inline std::string program;
    std::unique_ptr<ChildProcess> process;

private:
    ScratchProfile profile_;
};

double peakMegabytes(const ChildProcess& process) {
    std::ifstream status("/proc/" + std::to_string(process.pid()) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:")) return std::stod(line.substr(6)) * 1024 / 1e6;
    }
    throw std::runtime_error("the program has ended");
}

Seconds ownProcessorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return Seconds(static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9);
}

/// The longest pause between two ticks of a timer of the program's, beyond its interval, while it checks its
/// mail, until it has as many messages as expected; and the most processor time that its thread has spent in
/// one, which is what is left of it on a machine that does nothing else. The program runs in this process.
Cost longestPause(const Dovecot& server, std::size_t expected) {
    constexpr auto interval = 2ms;
    const ScratchProfile profile;
    Machine machine(Options{}, {profile.folder(), profile.folder()});
    std::ostringstream told;
    LinePrinter printer(told);
    TerminalShell shell(printer, nullptr);
    TerminalTray tray(printer, nullptr);
    TerminalPointer pointer;
    TerminalLink link(printer, machine.link);
    EngineAgent agent({.loop = machine.loop, .random = machine.random, .load = [](EngineAgent&) {
                           return Actor{"Merlin", std::make_unique<InstantStage>()};
                       }});
    Platform platform = machine.platform(shell, tray, pointer, agent, link);
    Program reader(platform);
    reader.start();
    machine.loop.run([&] { return reader.main().state() == FormState::loaded && !machine.loop.due(); });
    machine.loop.turn([&] {
        reader.options().TxtServer.Text = server.address();
        reader.options().TxtUser.Text = Dovecot::user;
        reader.options().TxtPass.Text = Dovecot::password;
        reader.mailCheck().FavouritesChecked = true;
    });
    auto last = Clock::now();
    auto lastProcessor = ownProcessorTime();
    Cost longest{};
    const auto tick = [&] {
        const auto now = Clock::now();
        const auto processor = ownProcessorTime();
        longest.milliseconds = std::max(longest.milliseconds, Seconds(now - last - interval).count() * 1e3);
        longest.processorMilliseconds =
            std::max(longest.processorMilliseconds, (processor - lastProcessor).count() * 1e3);
        last = now;
        lastProcessor = processor;
    };
    LoopTimer timer(machine.loop, tick);
    timer.start(interval);
    machine.loop.turn([&] { reader.mailCheck().Check_Mail(); });
    machine.loop.run([&] { return reader.main().comMail.peekRows().Count() >= expected; });
    tick();
    return longest;
}

void reportDelay(const std::string& what, const Cost& delay) {
    const std::string how = "median of " + std::to_string(runs);
    report(what + ", latest tick of a timer", delay.milliseconds, "ms", how + ", of each run the worst");
    report(what + ", the same on an idle machine", delay.processorMilliseconds, "ms",
           how + ", processor time between two ticks");
}

void manyMessages(Dovecot& server) {
    for (int number = 1; number <= messages; ++number)
        server.deliver(message(std::to_string(number), messageSize));
    const ScratchProfile profile;
    const std::string all = "pop3://" + server.address() + "/[1-" + std::to_string(messages) + "]";
    const std::string account = std::string(Dovecot::user) + ":" + Dovecot::password;
    const std::vector<std::string> curl{"curl", "-s", "-S", "-u", account, "-o", "/dev/null", all};
    const std::vector<std::string> mpop{"mpop",
                                        "--host=" + server.address(),
                                        "--tls=off",
                                        "--auth=user",
                                        std::string("--user=") + Dovecot::user,
                                        std::string("--passwordeval=echo ") + Dovecot::password,
                                        "--keep=on",
                                        "--only-new=off",
                                        "--uidls-file=" + (profile.folder() / "uidls").string(),
                                        "--delivery=mbox," + (profile.folder() / "mbox").string(),
                                        "--quiet"};
    std::vector<Cost> ours;
    std::vector<Cost> curls;
    std::vector<Cost> mpops;
    std::vector<Cost> delays;
    // In turn, so that what else the machine does meets all alike; the first round warms up.
    for (int run = -1; run < runs; ++run) {
        const Cost curlCost = costOf(curl, profile.environment());
        const Cost mpopCost = costOf(mpop, profile.environment());
        const Cost ourCost = Reader(server).check(std::to_string(messages));
        if (run < 0) continue;
        ours.push_back(ourCost);
        curls.push_back(curlCost);
        mpops.push_back(mpopCost);
        delays.push_back(longestPause(server, messages));
    }
    const std::string how = "median of " + std::to_string(runs) + ", same Dovecot mailbox";
    const Cost our = median(ours);
    const Cost curlCost = median(curls);
    const Cost mpopCost = median(mpops);
    report("1,000 messages of 4 kB", our.milliseconds, "ms", how + ", told of in the terminal");
    report("1,000 messages of 4 kB, curl", curlCost.milliseconds, "ms", how + ", thrown away");
    report("1,000 messages of 4 kB, mpop", mpopCost.milliseconds, "ms", how + ", to an mbox");
    const Cost& faster = curlCost.milliseconds < mpopCost.milliseconds ? curlCost : mpopCost;
    report("1,000 messages / the faster of the two", our.milliseconds / faster.milliseconds, "x", "time");
    report("1,000 messages, processor time", our.processorMilliseconds, "ms", how);
    report("1,000 messages, processor time, curl", curlCost.processorMilliseconds, "ms", how);
    report("1,000 messages, processor time, mpop", mpopCost.processorMilliseconds, "ms", how);
    report("1,000 messages / the faster of the two", our.processorMilliseconds / faster.processorMilliseconds,
           "x", "processor time");
    reportDelay("1,000 messages", median(delays));
}

void largeMessages(Dovecot& server) {
    constexpr double small = 10;
    constexpr double large = 50;
    std::vector<Cost> costs;
    for (const double megabytes : {small, large}) {
        server.emptyMailbox();
        server.deliver(message("big", static_cast<std::size_t>(megabytes * 1e6)));
        std::vector<Cost> each;
        std::vector<Cost> delays;
        double peak = 0;
        for (int run = -1; run < runs; ++run) {
            Reader reader(server);
            const Cost cost = reader.check("big");
            if (run < 0) continue;
            each.push_back(cost);
            delays.push_back(longestPause(server, 1));
            peak = std::max(peak, peakMegabytes(*reader.process));
        }
        costs.push_back(median(each));
        const std::string what = "one message of " + std::to_string(static_cast<int>(megabytes)) + " MB";
        const std::string how = "median of " + std::to_string(runs);
        report(what, costs.back().milliseconds, "ms", how);
        report(what + ", peak memory", peak, "MB", "VmHWM, most of " + std::to_string(runs));
        report(what + ", peak memory / the message", peak / megabytes, "x", "");
        reportDelay(what, median(delays));
    }
    report("50 MB / 10 MB", costs[1].milliseconds / costs[0].milliseconds, "x", "time");
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path& build) {
    int argc = 1;
    char name[] = "bench_mail";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    Reader::program = build / "apps/velmora";
    try {
        Dovecot server;
        manyMessages(server);
        largeMessages(server);
    } catch (const NoDovecot& reason) {
        std::cerr << "NOT MEASURED: no mail server here: " << reason.what() << "\n";
    }
}
