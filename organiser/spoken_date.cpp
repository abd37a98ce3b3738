#include "organiser/spoken_date.h"

#include <array>
#include <string_view>

namespace velmora {
namespace {

constexpr std::array<std::string_view, 7> weekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                   "Thursday", "Friday", "Saturday"};
constexpr std::array<std::string_view, 12> months{"January",   "February", "March",    "April",
                                                  "May",       "June",     "July",     "August",
                                                  "September", "October",  "November", "December"};

std::string_view endingOf(unsigned day) {
    constexpr std::array<std::string_view, 3> endings{"st ", "nd ", "rd "};
    constexpr unsigned ten = 10;
    const bool teen = day / ten == 1;
    const unsigned digit = day % ten;
    return teen || digit < 1 || digit > endings.size() ? "th " : endings.at(digit - 1);
}

std::string phrase(std::string_view weekday, std::string_view ordinal, std::string_view month,
                   std::string_view year) {
    std::string text(weekday);
    text.append(" the ").append(ordinal).append("of ").append(month).append(" ").append(year);
    return text;
}

}  // namespace

std::string spokenDate(std::chrono::year_month_day date) {
    if (!date.ok()) return phrase({}, {}, {}, {});
    const std::chrono::weekday weekday{std::chrono::sys_days(date)};
    const auto day = static_cast<unsigned>(date.day());
    return phrase(weekdays.at(weekday.c_encoding()), std::to_string(day).append(endingOf(day)),
                  months.at(static_cast<unsigned>(date.month()) - 1),
                  std::to_string(static_cast<int>(date.year())));
}

}  // namespace velmora
