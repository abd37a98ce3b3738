#include "mail/retrieved_text.h"

#include <algorithm>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view endMark = "\n.\r\n";
constexpr std::string_view lineEnd = "\r\n";
constexpr std::size_t dotLine = 3;  // the dot and its line end

}  // namespace

bool RetrievedText::add(std::string_view data) {
    // The mark may have begun in what was there before.
    const std::size_t from = text_.size() - std::min(text_.size(), endMark.size() - 1);
    text_.append(data);
    return text_.find(endMark, from) != std::string::npos;
}

std::string RetrievedText::take() {
    std::string text = std::exchange(text_, {});
    if (const auto end = text.find(lineEnd); end != std::string::npos) text.erase(0, end + lineEnd.size());
    if (text.size() >= dotLine) text.resize(text.size() - dotLine);
    return text;
}

}  // namespace velmora
