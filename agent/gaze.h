#pragma once

#include <optional>

#include "agent/rig.h"

namespace agent {

/// Where the eyes look while nothing else moves them: a little towards the pointer. Changes come smoothly.
class Gaze {
public:
    /// `rig` outlives the gaze. Without a bone "gaze" nothing is ever changed.
    explicit Gaze(const Rig& rig);

    /// Looks at a point, `right` and `down` of the eyes in any unit as long as `reach` of them is a figure's
    /// height.
    void aim(double right, double down, double reach);

    /// Looks ahead again.
    void aimAhead();

    /// Moves on to `now`, which never goes back.
    void advance(Milliseconds now);

    /// Whether the eyes are still on their way.
    bool moving() const;

    /// Where the pivot of the eyes is, in the rig's units; nothing for a figure without them.
    std::optional<std::pair<double, double>> eyes() const;

    /// Turns the eyes of a pose of the rig; those that the pose itself turns are left alone.
    void apply(Pose& pose) const;

private:
    struct Offset {
        double x = 0;
        double y = 0;
        bool operator==(const Offset&) const = default;
    };

    const Rig& rig_;
    std::optional<std::size_t> bone_;
    Offset target_;
    Offset now_;
    Milliseconds last_{0};
};

}  // namespace agent
