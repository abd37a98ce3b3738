#pragma once

#include "agent/rig.h"

namespace agent {

/// The figure at a time of a clip: before the first key as in the first, after the last as in the last.
/// Slots change at their key, all else moves between two keys by the ease of the later one.
Pose poseAt(const Clip& clip, Milliseconds time);

/// From one pose to another of the same rig: `part` 0 gives the first, 1 the second. Slots are the second's.
Pose blend(const Pose& from, const Pose& to, double part);

/// Plays the clips of a rig, one at a time. Knows no clock: every call brings the present time, which never
/// goes back.
class Animator {
public:
    /// `rig` outlives the animator. The figure begins at rest.
    explicit Animator(const Rig& rig);
    Animator(const Animator&) = delete;
    Animator& operator=(const Animator&) = delete;

    /// Starts a clip of the rig from whatever pose the figure has.
    void start(const Clip& clip, Milliseconds now);

    /// Puts the figure into a pose at once, which it then holds.
    void place(const Pose& pose);

    /// Lets a clip that repeats go on after the present round; the others end by themselves.
    void leaveLoop() { leaving_ = true; }

    /// Gives up the clip and goes to rest: by the clip that belongs to a held pose, or straight.
    void settle(Milliseconds now);

    /// Moves on to `now`.
    void advance(Milliseconds now);

    const Pose& pose() const { return pose_; }

    /// Whether the figure is under way; if not, it holds its pose until the next call.
    bool moving() const { return clip_ != nullptr; }

    /// Whether the figure may speak over what plays now.
    bool free() const;

    /// Whether the figure stands in its resting pose.
    bool atRest() const { return clip_ == nullptr && pose_ == rig_.rest; }

private:
    void wrapLoop(Milliseconds now);

    const Rig& rig_;
    const Clip* clip_ = nullptr;
    const Clip* held_ = nullptr;  ///< the clip whose last pose stands
    Pose pose_;
    Pose from_;              ///< the pose in which the clip found the figure
    Milliseconds since_{0};  ///< when the clip started, moved on by each round of its loop
    Milliseconds begun_{0};
    Milliseconds now_{0};
    int rounds_ = 0;
    bool leaving_ = false;
    Clip rest_;
};

}  // namespace agent
