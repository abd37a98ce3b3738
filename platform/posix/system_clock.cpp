#include "platform/posix/system_clock.h"

#include <ctime>

namespace velmora {
namespace {

using std::chrono::seconds;

DateTime machineTime() {
    const std::time_t time = std::time(nullptr);
    std::tm local{};
    localtime_r(&time, &local);
    const int leapSecond = 60;
    const std::chrono::year_month_day date{std::chrono::year(local.tm_year + 1900),
                                           std::chrono::month(static_cast<unsigned>(local.tm_mon + 1)),
                                           std::chrono::day(static_cast<unsigned>(local.tm_mday))};
    const int second = local.tm_sec >= leapSecond ? leapSecond - 1 : local.tm_sec;
    return {date, std::chrono::hours(local.tm_hour) + std::chrono::minutes(local.tm_min) + seconds(second)};
}

DateTime later(const DateTime& start, std::chrono::milliseconds span) {
    const seconds time = start.time + std::chrono::floor<seconds>(span);
    const auto days = std::chrono::floor<std::chrono::days>(time);
    return {std::chrono::year_month_day(std::chrono::sys_days(start.date) + days), time - days};
}

}  // namespace

SystemClock::SystemClock(const Loop& loop, std::optional<DateTime> startsAt)
    : loop_(loop), startsAt_(startsAt), started_(loop.now()) {}

DateTime SystemClock::now() const {
    return startsAt_ ? later(*startsAt_, loop_.now() - started_) : later(machineTime(), loop_.skipped());
}

}  // namespace velmora
