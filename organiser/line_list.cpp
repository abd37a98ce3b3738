#include "organiser/line_list.h"

#include <utility>

#include "base/failure.h"
#include "base/text.h"

namespace velmora {
namespace {

constexpr std::size_t linesPerMark = 64;

}  // namespace

void LineList::add(std::string text) {
    std::size_t begin = 0;
    if (text_.empty()) {
        text_ = std::move(text);
    } else {
        if (text_.back() != '\r' && text_.back() != '\n') text_.append("\r\n");
        begin = text_.size();
        text_.append(text);
    }
    LineWalk walk(text_, begin);
    for (auto line = walk.next(); line; line = walk.next()) {
        if (count_ % linesPerMark == 0) marks_.push_back(line->begin);
        ++count_;
    }
}

std::string LineList::Item(std::size_t number) const {
    if (number < 1 || number > count_) throw Failure(errors::invalidCall);
    const std::size_t index = number - 1;
    LineWalk walk(text_, marks_[index / linesPerMark]);
    auto line = walk.next();
    for (std::size_t skipped = 0; skipped < index % linesPerMark; ++skipped) line = walk.next();
    return text_.substr(line->begin, line->end - line->begin);
}

}  // namespace velmora
