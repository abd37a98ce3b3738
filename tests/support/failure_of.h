#pragma once

#include <functional>

#include "base/failure.h"

namespace velmora {

/// The number of the failure that the call ends with, 0 if it ends well.
inline long failureOf(const std::function<void()>& call) {
    try {
        call();
        return 0;
    } catch (const Failure& failure) {
        return failure.number;
    }
}

}  // namespace velmora
