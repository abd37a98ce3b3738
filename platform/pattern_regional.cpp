#include "platform/pattern_regional.h"

#include <algorithm>
#include <charconv>

#include "base/failure.h"
#include "base/text.h"

namespace velmora {
namespace {

constexpr std::size_t yearDigits = 4;
constexpr int firstYear = 100;
constexpr int noon = 12;

void append(std::string& text, int number, std::size_t width) {
    const std::string digits = std::to_string(number);
    text.append(width > digits.size() ? width - digits.size() : 0, '0').append(digits);
}

/// Takes up to `most` digits off the front.
std::optional<int> takeNumber(std::string_view& rest, std::size_t most) {
    int number = 0;
    const auto field = rest.substr(0, most);
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (error != std::errc() || number < 0 || field.front() == '-') return std::nullopt;
    rest.remove_prefix(static_cast<std::size_t>(end - field.data()));
    return number;
}

bool takeWord(std::string_view& rest, std::string_view word) {
    if (word.empty() || !equalsIgnoringCase(rest.substr(0, word.size()), word)) return false;
    rest.remove_prefix(word.size());
    return true;
}

}  // namespace

struct PatternRegional::Values {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int hourOfHalf = -1;
    int minute = 0;
    int second = 0;
    bool afternoon = false;
};

PatternRegional::PatternRegional(RegionalForm form)
    : form_(std::move(form)), date_(parse(form_.datePattern)), time_(parse(form_.timePattern)) {
    const bool named = std::none_of(form_.months.begin(), form_.months.end(),
                                    [](const std::string& name) { return name.empty(); });
    const bool dates = holdsAll(date_, {Part::day, Part::month, Part::year}) ||
                       (named && holdsAll(date_, {Part::day, Part::monthName, Part::year}));
    if (!dates) date_ = parse("yyyy-MM-dd");
    if (!writesTime(time_)) time_ = parse("HH:mm:ss");
}

PatternRegional::Part PatternRegional::partOf(char letter, std::size_t count) {
    struct Letter {
        char letter;
        Part part;
    };
    static constexpr std::array letters{
        Letter{'d', Part::day},    Letter{'M', Part::month},      Letter{'y', Part::year},
        Letter{'H', Part::hour},   Letter{'h', Part::hourOfHalf}, Letter{'m', Part::minute},
        Letter{'s', Part::second}, Letter{'A', Part::half},       Letter{'a', Part::half}};
    const auto* found = std::find_if(letters.begin(), letters.end(),
                                     [letter](const Letter& known) { return known.letter == letter; });
    if (found == letters.end()) return Part::literal;
    return found->part == Part::month && count > 2 ? Part::monthName : found->part;
}

PatternRegional::Pieces PatternRegional::parse(std::string_view pattern) {
    Pieces pieces;
    const auto literal = [&pieces](char character) {
        if (pieces.empty() || pieces.back().part != Part::literal) pieces.push_back({Part::literal});
        pieces.back().literal += character;
    };
    bool quoted = false;
    while (!pattern.empty()) {
        const char letter = pattern.front();
        const auto count = std::min(pattern.find_first_not_of(letter), pattern.size());
        const Part part = quoted ? Part::literal : partOf(letter, count);
        std::size_t used = 1;
        if (letter == '\'') {
            const bool doubled = count > 1;
            doubled ? literal(letter) : void(quoted = !quoted);
            used = doubled ? 2 : 1;
        } else if (part == Part::literal) {
            literal(letter);
        } else {
            used = count;
            pieces.push_back({part, part == Part::year ? yearDigits : count});
            if (part == Part::half && pattern.size() > used && lowered(pattern[used]) == 'p') ++used;
        }
        pattern.remove_prefix(used);
    }
    const bool halves = std::any_of(pieces.begin(), pieces.end(),
                                    [](const Piece& piece) { return piece.part == Part::half; });
    for (Piece& piece : pieces) {
        if (!halves && piece.part == Part::hourOfHalf) piece.part = Part::hour;
    }
    return pieces;
}

bool PatternRegional::holdsAll(const Pieces& pieces, std::initializer_list<Part> parts) {
    const auto count = [&pieces](Part part) {
        return std::count_if(pieces.begin(), pieces.end(),
                             [part](const Piece& piece) { return piece.part == part; });
    };
    return std::all_of(parts.begin(), parts.end(), [&](Part part) { return count(part) == 1; }) &&
           static_cast<std::ptrdiff_t>(pieces.size()) ==
               count(Part::literal) + static_cast<std::ptrdiff_t>(parts.size());
}

bool PatternRegional::writesTime(const Pieces& pieces) const {
    const bool halvesDiffer = !form_.am.empty() && !form_.pm.empty() && form_.am != form_.pm;
    return holdsAll(pieces, {Part::hour, Part::minute, Part::second}) ||
           (halvesDiffer && (holdsAll(pieces, {Part::hour, Part::minute, Part::second, Part::half}) ||
                             holdsAll(pieces, {Part::hourOfHalf, Part::minute, Part::second, Part::half})));
}

std::string PatternRegional::write(const Pieces& pieces, const DateTime& value) const {
    const auto month = static_cast<unsigned>(value.date.month());
    const std::chrono::hh_mm_ss time(value.time);
    const int hour = static_cast<int>(time.hours().count());
    std::string text;
    for (const Piece& piece : pieces) {
        const auto number = [&](auto given) { append(text, static_cast<int>(given), piece.width); };
        switch (piece.part) {
            case Part::literal:
                text += piece.literal;
                break;
            case Part::day:
                number(static_cast<unsigned>(value.date.day()));
                break;
            case Part::month:
                number(month);
                break;
            case Part::monthName:
                text += form_.months.at(month - 1);
                break;
            case Part::year:
                number(static_cast<int>(value.date.year()));
                break;
            case Part::hour:
                number(hour);
                break;
            case Part::hourOfHalf:
                number(hour % noon == 0 ? noon : hour % noon);
                break;
            case Part::minute:
                number(time.minutes().count());
                break;
            case Part::second:
                number(time.seconds().count());
                break;
            case Part::half:
                text += hour < noon ? form_.am : form_.pm;
                break;
        }
    }
    return text;
}

bool PatternRegional::read(const Piece& piece, std::string_view& rest, Values& values) const {
    const auto number = [&rest](int& into, std::size_t most = 2) {
        const auto taken = takeNumber(rest, most);
        into = taken.value_or(into);
        return taken.has_value();
    };
    switch (piece.part) {
        case Part::literal:
            if (!rest.starts_with(piece.literal)) return false;
            rest.remove_prefix(piece.literal.size());
            return true;
        case Part::day:
            return number(values.day);
        case Part::month:
            return number(values.month);
        case Part::monthName:
            // From behind: where one name begins another, as "1" does "12", the longer one stands later.
            for (values.month = static_cast<int>(form_.months.size()); values.month > 0; --values.month) {
                if (takeWord(rest, form_.months.at(static_cast<std::size_t>(values.month) - 1))) return true;
            }
            return false;
        case Part::year:
            return number(values.year, yearDigits);
        case Part::hour:
            return number(values.hour);
        case Part::hourOfHalf:
            return number(values.hourOfHalf) && values.hourOfHalf >= 1 && values.hourOfHalf <= noon;
        case Part::minute:
            return number(values.minute);
        case Part::second:
            return number(values.second);
        case Part::half:
            values.afternoon = takeWord(rest, form_.pm);
            return values.afternoon || takeWord(rest, form_.am);
    }
    return false;
}

bool PatternRegional::readAll(const Pieces& pieces, std::string_view& rest, Values& values) const {
    return std::all_of(pieces.begin(), pieces.end(),
                       [&](const Piece& piece) { return read(piece, rest, values); });
}

std::optional<std::chrono::year_month_day> PatternRegional::takeDate(std::string_view& rest) const {
    Values values;
    if (!readAll(date_, rest, values) || values.year < firstYear) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(values.year),
                                           std::chrono::month(static_cast<unsigned>(values.month)),
                                           std::chrono::day(static_cast<unsigned>(values.day))};
    return date.ok() ? std::optional(date) : std::nullopt;
}

std::optional<std::chrono::seconds> PatternRegional::takeTime(std::string_view& rest) const {
    Values values;
    if (!readAll(time_, rest, values)) return std::nullopt;
    if (values.hourOfHalf >= 0) values.hour = values.hourOfHalf % noon + (values.afternoon ? noon : 0);
    if (values.hour > 23 || values.minute > 59 || values.second > 59) return std::nullopt;
    return std::chrono::hours(values.hour) + std::chrono::minutes(values.minute) +
           std::chrono::seconds(values.second);
}

std::string PatternRegional::shortDate(std::chrono::year_month_day date) const {
    return write(date_, {.date = date});
}

std::string PatternRegional::longTime(std::chrono::seconds time) const {
    return write(time_, {.time = time});
}

std::string PatternRegional::text(const DateTime& value) const {
    if (value.date == DateTime::dayZero) return longTime(value.time);
    std::string text = shortDate(value.date);
    if (value.time != std::chrono::seconds(0)) text.append(" ").append(longTime(value.time));
    return text;
}

DateTime PatternRegional::toDateTime(std::string_view text) const {
    const std::string_view whole = trim(text);
    std::string_view rest = whole;
    if (const auto date = takeDate(rest)) {
        if (rest.empty()) return {.date = *date};
        const bool apart = isBlank(rest.front());
        rest = trim(rest);
        const auto time = takeTime(rest);
        if (apart && time && rest.empty()) return {*date, *time};
    }
    rest = whole;
    if (const auto time = takeTime(rest); time && rest.empty()) return {.time = *time};
    return velmora::toDateTime(whole);
}

}  // namespace velmora
