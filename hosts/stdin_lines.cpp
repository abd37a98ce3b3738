#include "hosts/stdin_lines.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace velmora {

DescriptorLines::DescriptorLines(int descriptor)
    : descriptor_(descriptor), notifier_(descriptor, QSocketNotifier::Read) {
    notifier_.setEnabled(false);
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] {
        notifier_.setEnabled(false);
        readMore();
    });
}

void DescriptorLines::close() {
    notifier_.setEnabled(false);
    atEnd_ = true;
    buffer_.clear();
    taken_ = searched_ = 0;
}

void DescriptorLines::readMore() {
    std::array<char, 65536> block{};
    const ssize_t count = read(descriptor_, block.data(), block.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (count <= 0) {
        atEnd_ = true;
        return;
    }
    buffer_.erase(0, taken_);
    searched_ -= taken_;
    taken_ = 0;
    buffer_.append(block.data(), static_cast<std::size_t>(count));
}

std::optional<std::string> DescriptorLines::take() {
    const auto end = buffer_.find('\n', searched_);
    if (end == std::string::npos && !(atEnd_ && buffer_.size() > taken_)) {
        searched_ = buffer_.size();
        return {};
    }
    std::string line = buffer_.substr(taken_, std::min(end, buffer_.size()) - taken_);
    taken_ = searched_ = end == std::string::npos ? buffer_.size() : end + 1;
    return line;
}

std::optional<std::string> DescriptorLines::next() {
    if (auto line = take()) return line;
    if (!atEnd_) notifier_.setEnabled(true);
    return {};
}

}  // namespace velmora
