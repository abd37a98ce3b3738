#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "base/conversions.h"

namespace velmora {

/// Dates and times as texts in the form that the user has set for this machine, in the digits 0 to 9. The
/// form does not change while the program runs.
class Regional {
public:
    virtual ~Regional() = default;

    /// The date in the short form, always with the whole year. `toDateTime` below reads it back.
    virtual std::string shortDate(std::chrono::year_month_day date) const = 0;

    /// The time of day with its seconds; `time` counts from midnight and is less than a day. `toDateTime`
    /// below reads it back.
    virtual std::string longTime(std::chrono::seconds time) const = 0;

    /// Short date, a blank, long time. At midnight the date alone; on `DateTime::dayZero` the time alone.
    virtual std::string text(const DateTime& value) const = 0;

    /// Reads what the three above write, and besides that all that `velmora::toDateTime` reads; of a text
    /// that both read, the user's order of day and month decides. Fails with 13 for any other text.
    virtual DateTime toDateTime(std::string_view text) const = 0;
};

}  // namespace velmora
