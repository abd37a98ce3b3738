#pragma once

#include <string>

namespace velmora {

/// A position on the screen, in pixels from the corner of the leftmost, topmost screen.
struct ScreenPoint {
    int x = 0;
    int y = 0;
};

/// The mouse.
class Pointer {
public:
    virtual ~Pointer() = default;
    virtual ScreenPoint position() const = 0;
    /// File name of the program whose window is under the mouse, empty if there is none or it can't be told.
    virtual std::string programUnder() const = 0;
};

}  // namespace velmora
