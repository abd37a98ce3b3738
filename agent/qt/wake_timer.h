#pragma once

#include <QTimer>
#include <functional>
#include <optional>

#include "agent/performer.h"

namespace agent {

/// Lets a figure take its turns: a single shot of the timer is what it asks to be woken by. Both outlive the
/// wish.
inline std::function<void(std::optional<Milliseconds>)> wakeBy(QTimer& timer) {
    return [&timer](std::optional<Milliseconds> after) {
        if (after) {
            timer.start(*after);
        } else {
            timer.stop();
        }
    };
}

}  // namespace agent
