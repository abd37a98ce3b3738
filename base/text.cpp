#include "base/text.h"

#include <algorithm>

namespace velmora {

std::string_view trim(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

bool equalsIgnoringCase(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char left, char right) { return lowered(left) == lowered(right); });
}

bool endsWithIgnoringCase(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() &&
           equalsIgnoringCase(text.substr(text.size() - ending.size()), ending);
}

LineWalk::LineWalk(std::string_view text, std::size_t begin)
    : text_(text),
      position_(begin),
      lineFeed_(text.find('\n', begin)),
      carriageReturn_(text.find('\r', begin)) {}

std::optional<LineSpan> LineWalk::next() {
    if (position_ >= text_.size()) return std::nullopt;
    if (lineFeed_ < position_) lineFeed_ = text_.find('\n', position_);
    if (carriageReturn_ < position_) carriageReturn_ = text_.find('\r', position_);

    LineSpan line{position_, std::min({lineFeed_, carriageReturn_, text_.size()}), text_.size()};
    if (line.end < text_.size()) {
        const bool both = line.end == carriageReturn_ && lineFeed_ == carriageReturn_ + 1;
        line.next = line.end + (both ? 2 : 1);
    }
    position_ = line.next;
    return line;
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    LineWalk walk(text);
    while (const auto line = walk.next()) lines.push_back(text.substr(line->begin, line->end - line->begin));
    return lines;
}

}  // namespace velmora
