// What 10,000 appointments cost: reading them at the load of the calendar, showing a date, and saving them.

#include <chrono>
#include <ctime>
#include <stdexcept>
#include <string>

#include "core/crypter.h"
#include "organiser/frm_calender.h"
#include "platform/boxes.h"
#include "platform/ini_settings_file.h"
#include "platform/pattern_regional.h"
#include "platform/posix/posix_files.h"
#include "tests/bench/benchmark.h"
#include "tests/support/scratch_profile.h"

namespace {

using namespace std::chrono_literals;
using namespace velmora;
using namespace velmora::bench;

constexpr int runs = 21;
constexpr std::size_t count = 10'000;

struct Morning : Clock {
    DateTime now() const override { return {std::chrono::year(2026) / 3 / 5, 9h}; }
};

struct NoOutside : LoopHost {
    std::chrono::milliseconds elapsed() const override { return 0ms; }
    void serve(std::optional<std::chrono::milliseconds>) override {}
};

double wallTime() {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// For what waits for nothing: the time it would take alone on the machine.
double processorTime() {
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

template <class Work>
double medianMilliseconds(double (*time)(), Work work) {
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const double start = time();
        work();
        times.push_back(time() - start);
    }
    return median(times);
}

/// Appointments on as many days as are given, in turn, the first one today.
void measure(std::size_t days, const std::string& kind) {
    const velmora::blackbox::ScratchProfile profile;
    PosixFiles files;
    IniSettingsFile ini(files);
    const std::string folder = profile.folder();
    const std::string iniFile = "Velmora.ini";
    Settings settings(ini, folder);
    PatternRegional regional;
    Morning clock;
    NoOutside host;
    Loop loop(host);
    Boxes boxes(loop);
    Forms forms(loop);
    FrmCalender calender(forms, {.settings = settings,
                                 .IniFile = iniFile,
                                 .files = files,
                                 .applicationFolder = folder,
                                 .clock = clock,
                                 .regional = regional,
                                 .dialogs = boxes,
                                 .FileExists = [](const std::string&) { return true; },
                                 .Character = {},
                                 .AgentVisible = {}});
    std::string content;
    const std::chrono::sys_days today = clock.now().date;
    for (std::size_t i = 0; i < count; ++i) {
        const auto date = regional.shortDate(today + std::chrono::days(i % days));
        content.append(Encipher(date + "@10:30:00 AM@Appointment " + std::to_string(i) + "@", mainKey));
        content.append("\r\n");
    }
    files.replace(path(folder, FrmCalender::fileName), content, Privacy::ownersOnly);

    const std::string how = "median of " + std::to_string(runs) + ", 10,000 appointments " + kind;
    const std::string processor = how + ", processor time";
    calender.Load();
    report("load of the appointments",
           medianMilliseconds(processorTime,
                              [&] {
                                  calender.AppList = AppointmentList(regional);
                                  calender.LoadAppointments();
                              }),
           "ms", processor);
    report("first showing of a date",
           medianMilliseconds(processorTime,
                              [&] {
                                  calender.AppList = AppointmentList(regional);
                                  calender.LoadAppointments();
                                  calender.RefreshAppList();
                              }),
           "ms", processor + ", load included");
    report("showing of a date", medianMilliseconds(processorTime, [&] { calender.RefreshAppList(); }), "ms",
           processor);
    report("save of the appointments", medianMilliseconds(wallTime, [&] { calender.SaveAppointments(); }),
           "ms", how);
    report("the same content written and flushed",
           medianMilliseconds(wallTime,
                              [&] { files.replace(path(folder, "other"), content, Privacy::ownersOnly); }),
           "ms", "median of " + std::to_string(runs) + ", for comparison");
    if (calender.lvApps.ListItems().Count() != (count + days - 1) / days)
        throw std::runtime_error("a wrong number of appointments was shown");
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path&) {
    measure(1000, "on 1,000 days");
    measure(1, "on one day");
}
