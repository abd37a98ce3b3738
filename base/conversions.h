#pragma once

#include <chrono>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmora {

/// The number that the text names: a sign, digits, a fraction and an exponent, with blanks around them. A
/// fraction is rounded, a half to the even neighbour (2.5 gives 2). Fails with 13 for any other text, 6
/// outside 16 bits.
std::int16_t toInteger16(std::string_view text);

/// True for "True" in any case and for every number but 0; False for "False" and 0. Fails with 13 for any
/// other text.
bool toBoolean(std::string_view text);

/// "True" or "False".
std::string_view booleanText(bool value);

/// A civil date and a time of day, in no time zone.
struct DateTime {
    /// A text that holds a time only is a time on this day.
    static constexpr std::chrono::year_month_day dayZero{std::chrono::year{1899}, std::chrono::December,
                                                         std::chrono::day{30}};

    std::chrono::year_month_day date = dayZero;
    std::chrono::seconds time{0};  ///< since midnight, less than a day

    friend auto operator<=>(const DateTime&, const DateTime&) = default;
};

/// Reads a date, a time, or a date, a blank and a time: YYYY-MM-DD, M/D/YYYY or D Mon YYYY (English month
/// names, three letters of either case) in the years 100 to 9999; H:MM, H:MM:SS, either followed by AM or PM.
/// Fails with 13.
DateTime toDateTime(std::string_view text);

/// "YYYY-MM-DD", which `toDateTime` reads.
std::string dateText(std::chrono::year_month_day date);

/// "HH:MM:SS", which `toDateTime` reads. `time` counts from midnight and is less than a day.
std::string timeText(std::chrono::seconds time);

/// The first `count` characters, or all if there are fewer. Fails with 5 for a negative count.
std::string_view left(std::string_view text, std::ptrdiff_t count);

}  // namespace velmora
