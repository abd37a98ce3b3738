#pragma once

#include <QSocketNotifier>
#include <string>

#include "platform/console/line_input.h"

namespace velmora {

/// Lines from a file descriptor. It is read only while a line is wanted, so that what is not wanted yet stays
/// in the pipe.
class DescriptorLines : public LineInput {
public:
    /// The descriptor stays the caller's.
    explicit DescriptorLines(int descriptor);

    std::optional<std::string> next() override;
    /// Takes no more lines: the input counts as ended.
    void close();
    bool ended() const override { return atEnd_ && buffer_.size() == taken_; }

private:
    void readMore();
    std::optional<std::string> take();

    int descriptor_;
    QSocketNotifier notifier_;
    std::string buffer_;
    std::size_t taken_ = 0;     ///< how much of the buffer has been given out
    std::size_t searched_ = 0;  ///< up to where no line end has been found
    bool atEnd_ = false;
};

}  // namespace velmora
