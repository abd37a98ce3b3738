#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <utility>

#include "agent/rig.h"

namespace agent {

/// What a figure does of its own accord, and when: it blinks, and now and then plays one of its idle
/// animations (`Idle1_...`, later `Idle2_...`, `Idle3_...`), the rarer the longer nothing was asked of it.
class Idle {
public:
    /// A number below `count`.
    using Pick = std::function<std::size_t(std::size_t count)>;

    explicit Idle(Pick pick) : pick_(std::move(pick)) {}

    /// Something was asked of the figure.
    void disturb() { quiet_ = sinceAct_ = Milliseconds(0); }

    /// How long to do nothing now.
    Milliseconds pause();

    /// What to do after that pause; null if the rig has nothing for it.
    const Clip* choose(const Rig& rig);

private:
    Pick pick_;
    Milliseconds quiet_{0};     ///< since the last disturbance
    Milliseconds sinceAct_{0};  ///< since the last idle animation
};

}  // namespace agent
