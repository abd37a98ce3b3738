#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

/// What has arrived of a message under way. Each byte is searched once, so that the time for a message is
/// linear in its size however it is cut up.
class RetrievedText {
public:
    /// Adds what has arrived. Answers whether the text holds the end of a message: a line with nothing but a
    /// dot.
    bool add(std::string_view data);

    /// The text without its first line and without its last three characters, which a whole message ends
    /// with; nothing else is looked at. Empties this.
    std::string take();

    std::size_t size() const { return text_.size(); }

private:
    std::string text_;
};

}  // namespace velmora
