#pragma once

#include "platform/pointer.h"

namespace velmora::qt {

/// The mouse, in the pixels of the device whatever the desktop's scale.
class QtPointer : public Pointer {
public:
    ScreenPoint position() const override;
    /// Qt can't tell whose window is under the mouse: always empty.
    std::string programUnder() const override { return {}; }
};

}  // namespace velmora::qt
