#include "base/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <limits>
#include <optional>
#include <vector>

#include "base/failure.h"
#include "base/text.h"

namespace velmora {
namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// A decimal number: 0.DIGITS times ten to the power `point`, no zeros in front. No digits: zero.
struct Decimal {
    bool negative = false;
    std::string digits;
    std::ptrdiff_t point = 0;
};

std::string_view takeDigits(std::string_view& rest) {
    const auto* end = std::find_if_not(rest.begin(), rest.end(), isDigit);
    const auto digits = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    rest.remove_prefix(digits.size());
    return digits;
}

bool takeSign(std::string_view& rest) {
    if (rest.empty() || (rest.front() != '-' && rest.front() != '+')) return false;
    const bool negative = rest.front() == '-';
    rest.remove_prefix(1);
    return negative;
}

/// Reads "e-3" and the like; nothing if there is no exponent to the end of the text.
std::optional<std::ptrdiff_t> exponentOf(std::string_view rest) {
    if (rest.empty()) return 0;
    if (lowered(rest.front()) != 'e') return std::nullopt;
    rest.remove_prefix(1);
    const bool negative = takeSign(rest);
    const auto digits = takeDigits(rest);
    if (digits.empty() || !rest.empty()) return std::nullopt;
    // Beyond this bound any number is far outside 16 bits or rounds to zero, whatever its digits are.
    constexpr std::ptrdiff_t bound = std::numeric_limits<std::int32_t>::max();
    std::ptrdiff_t exponent = 0;
    for (const char digit : digits) exponent = std::min(bound, exponent * 10 + (digit - '0'));
    return negative ? -exponent : exponent;
}

std::optional<Decimal> parseDecimal(std::string_view text) {
    auto rest = trim(text);
    Decimal number;
    number.negative = takeSign(rest);
    const auto whole = takeDigits(rest);
    std::string_view fraction;
    if (!rest.empty() && rest.front() == '.') {
        rest.remove_prefix(1);
        fraction = takeDigits(rest);
    }
    const auto exponent = exponentOf(rest);
    if ((whole.empty() && fraction.empty()) || !exponent) return std::nullopt;

    number.digits.append(whole).append(fraction);
    const auto zeros = std::min(number.digits.find_first_not_of('0'), number.digits.size());
    number.digits.erase(0, zeros);
    number.point = static_cast<std::ptrdiff_t>(whole.size()) - static_cast<std::ptrdiff_t>(zeros) + *exponent;
    return number;
}

/// Whether the digits behind the whole part `whole` round it up: more than a half, or a half beside an odd
/// number.
bool roundsUp(long whole, std::string_view fraction) {
    if (fraction.empty() || fraction.front() != '5') return !fraction.empty() && fraction.front() > '5';
    return fraction.find_first_not_of('0', 1) != std::string_view::npos || whole % 2 != 0;
}

std::optional<int> numberOf(std::string_view digits, std::size_t longest) {
    if (digits.empty() || digits.size() > longest || !std::all_of(digits.begin(), digits.end(), isDigit)) {
        return std::nullopt;
    }
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (;;) {
        const auto end = text.find(separator);
        parts.push_back(text.substr(0, end));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

std::optional<int> monthOf(std::string_view text) {
    static constexpr std::array<std::string_view, 12> names{"jan", "feb", "mar", "apr", "may", "jun",
                                                            "jul", "aug", "sep", "oct", "nov", "dec"};
    const auto* found = std::find_if(
        names.begin(), names.end(), [text](std::string_view name) { return equalsIgnoringCase(name, text); });
    if (found == names.end()) return std::nullopt;
    return static_cast<int>(found - names.begin()) + 1;
}

std::optional<std::chrono::year_month_day> validDate(std::optional<int> year, std::optional<int> month,
                                                     std::optional<int> day) {
    if (!year || !month || !day || *year < 100) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year{*year},
                                           std::chrono::month{static_cast<unsigned>(*month)},
                                           std::chrono::day{static_cast<unsigned>(*day)}};
    return date.ok() ? std::optional(date) : std::nullopt;
}

std::optional<std::chrono::year_month_day> parseDate(std::string_view text) {
    if (const auto parts = split(text, '-'); parts.size() == 3) {
        return validDate(numberOf(parts[0], 4), numberOf(parts[1], 2), numberOf(parts[2], 2));
    }
    if (const auto parts = split(text, '/'); parts.size() == 3) {
        return validDate(numberOf(parts[2], 4), numberOf(parts[0], 2), numberOf(parts[1], 2));
    }
    if (const auto parts = split(text, ' '); parts.size() == 3) {
        return validDate(numberOf(parts[2], 4), monthOf(parts[1]), numberOf(parts[0], 2));
    }
    return std::nullopt;
}

std::optional<std::chrono::seconds> parseTime(std::string_view text) {
    bool morning = false;
    bool afternoon = false;
    if (text.size() > 2) {
        morning = endsWithIgnoringCase(text, "am");
        afternoon = endsWithIgnoringCase(text, "pm");
        if (morning || afternoon) text = trim(text.substr(0, text.size() - 2));
    }
    const auto parts = split(text, ':');
    if (parts.size() < 2 || parts.size() > 3) return std::nullopt;
    auto hour = numberOf(parts[0], 2);
    const auto minute = numberOf(parts[1], 2);
    const auto second = parts.size() == 3 ? numberOf(parts[2], 2) : 0;
    if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
    if (morning || afternoon) {
        if (*hour < 1 || *hour > 12) return std::nullopt;
        hour = *hour % 12 + (afternoon ? 12 : 0);
    }
    return std::chrono::hours{*hour} + std::chrono::minutes{*minute} + std::chrono::seconds{*second};
}

/// The date and the time of a text that holds both. The blank between them is the last one that leaves a date
/// in front of it, for dates and times hold blanks too.
std::optional<DateTime> parseBoth(std::string_view text) {
    for (auto blank = text.find(' '); blank != std::string_view::npos; blank = text.find(' ', blank + 1)) {
        const auto date = parseDate(trim(text.substr(0, blank)));
        const auto time = parseTime(trim(text.substr(blank)));
        if (date && time) return DateTime{*date, *time};
    }
    return std::nullopt;
}

}  // namespace

std::int16_t toInteger16(std::string_view text) {
    const auto number = parseDecimal(text);
    if (!number) throw Failure(errors::typeMismatch);
    if (number->digits.empty() || number->point < 0) return 0;
    constexpr std::ptrdiff_t mostDigits = 5;
    if (number->point > mostDigits) throw Failure(errors::overflow);

    long whole = 0;
    const auto digits = std::string_view(number->digits);
    const auto wholeDigits = static_cast<std::size_t>(number->point);
    for (std::size_t i = 0; i < wholeDigits; ++i) {
        whole = whole * 10 + (i < digits.size() ? digits[i] - '0' : 0);
    }
    if (digits.size() > wholeDigits && roundsUp(whole, digits.substr(wholeDigits))) ++whole;
    if (number->negative) whole = -whole;
    if (whole < std::numeric_limits<std::int16_t>::min() ||
        whole > std::numeric_limits<std::int16_t>::max()) {
        throw Failure(errors::overflow);
    }
    return static_cast<std::int16_t>(whole);
}

bool toBoolean(std::string_view text) {
    const auto word = trim(text);
    if (equalsIgnoringCase(word, "True")) return true;
    if (equalsIgnoringCase(word, "False")) return false;
    const auto number = parseDecimal(word);
    if (!number) throw Failure(errors::typeMismatch);
    return !number->digits.empty();
}

std::string_view booleanText(bool value) {
    return value ? "True" : "False";
}

DateTime toDateTime(std::string_view text) {
    const auto trimmed = trim(text);
    if (const auto date = parseDate(trimmed)) return {.date = *date};
    if (const auto time = parseTime(trimmed)) return {.time = *time};
    if (const auto both = parseBoth(trimmed)) return *both;
    throw Failure(errors::typeMismatch);
}

std::string dateText(std::chrono::year_month_day date) {
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return buffer.data();
}

std::string timeText(std::chrono::seconds time) {
    const std::chrono::hh_mm_ss parts(time);
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%02d:%02d:%02d", static_cast<int>(parts.hours().count()),
                  static_cast<int>(parts.minutes().count()), static_cast<int>(parts.seconds().count()));
    return buffer.data();
}

std::string_view left(std::string_view text, std::ptrdiff_t count) {
    if (count < 0) throw Failure(errors::invalidCall);
    return text.substr(0, static_cast<std::size_t>(count));
}

}  // namespace velmora
