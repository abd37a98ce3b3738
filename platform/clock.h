#pragma once

#include "base/conversions.h"

namespace velmora {

/// The local time, as the program knows it.
class Clock {
public:
    virtual ~Clock() = default;
    virtual DateTime now() const = 0;
};

}  // namespace velmora
