#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/regional.h"

namespace velmora {

/// How a region writes dates and times; as it stands, the American way.
///
/// In a pattern d and M are day and month, H the hour, h the hour of half a day if the pattern has AP, m and
/// s minute and second, all doubled for two digits; MMM is the month's name, y in any number the whole year.
/// What stands between single quotes, and every other character, is written as it is.
struct RegionalForm {
    std::string datePattern = "M/d/yyyy";
    std::string timePattern = "h:mm:ss AP";
    std::array<std::string, 12> months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::string am = "AM";
    std::string pm = "PM";
};

/// Writes and reads dates and times by patterns. A pattern that leaves anything out is replaced by YYYY-MM-DD
/// or HH:MM:SS.
class PatternRegional final : public Regional {
public:
    explicit PatternRegional(RegionalForm form = {});

    std::string shortDate(std::chrono::year_month_day date) const override;
    std::string longTime(std::chrono::seconds time) const override;
    std::string text(const DateTime& value) const override;
    DateTime toDateTime(std::string_view text) const override;

private:
    enum class Part { literal, day, month, monthName, year, hour, hourOfHalf, minute, second, half };
    struct Piece {
        Part part;
        std::size_t width = 0;     // digits at least
        std::string literal = {};  // of a literal
    };
    using Pieces = std::vector<Piece>;
    struct Values;

    static Pieces parse(std::string_view pattern);
    static Part partOf(char letter, std::size_t count);
    /// Each of them once, and nothing that the other pattern is for.
    static bool holdsAll(const Pieces& pieces, std::initializer_list<Part> parts);
    bool writesTime(const Pieces& pieces) const;

    std::string write(const Pieces& pieces, const DateTime& value) const;
    /// Takes what the pieces stand for off the front of the text.
    bool read(const Piece& piece, std::string_view& rest, Values& values) const;
    bool readAll(const Pieces& pieces, std::string_view& rest, Values& values) const;
    std::optional<std::chrono::year_month_day> takeDate(std::string_view& rest) const;
    std::optional<std::chrono::seconds> takeTime(std::string_view& rest) const;

    RegionalForm form_;
    Pieces date_;
    Pieces time_;
};

}  // namespace velmora
