#pragma once

#include "agent/rig.h"

namespace agent {

/// The figure at a time of a clip: before the first key as in the first, after the last as in the last.
/// Slots change at their key, all else moves between two keys by the ease of the later one.
Pose poseAt(const Clip& clip, Milliseconds time);

/// From one pose to another of the same rig: `part` 0 gives the first, 1 the second. Slots are the second's.
Pose blend(const Pose& from, const Pose& to, double part);

/// Plays the clips of a rig, one at a time, and joins them without a jump: every clip is entered from the
/// pose in which it finds the figure. Knows no clock: every call brings the present time, which never goes
/// back.
class Animator {
public:
    /// `rig` outlives the animator. The figure begins at rest.
    explicit Animator(const Rig& rig);
    Animator(const Animator&) = delete;
    Animator& operator=(const Animator&) = delete;

    /// Starts a clip of the rig at once, in place of what plays, from whatever pose the figure has.
    void start(const Clip& clip, Milliseconds now);

    /// Plays a clip of the rig as soon as what plays has ended. What repeats is left by its exit, and a held
    /// pose by its return, unless the clip is that return or goes on with the same thing. Of two such clips
    /// that have not begun, the later one counts.
    void follow(const Clip& clip, Milliseconds now);

    /// Puts the figure into a pose at once, which it then holds.
    void place(const Pose& pose);

    /// Takes a clip that repeats to its exit; the others end by themselves.
    void leaveLoop(Milliseconds now);

    /// Gives up the clip and goes to rest: by the clip that belongs to a held pose, or straight.
    void settle(Milliseconds now);

    /// Moves on to `now`.
    void advance(Milliseconds now);

    const Pose& pose() const { return pose_; }

    /// Whether the figure is under way; if not, it holds its pose until the next call.
    bool moving() const { return clip_ != nullptr; }

    /// What plays now; null if nothing does.
    const Clip* playing() const { return clip_; }

    /// Whether the figure may speak over what plays now.
    bool free() const;

    /// Whether the figure stands in its resting pose.
    bool atRest() const { return clip_ == nullptr && pose_ == rig_.rest; }

private:
    void begin(const Clip& clip, Milliseconds now);
    void beginReturn(const Clip& back, Milliseconds now);
    void beginNext(Milliseconds now);
    void wrapLoop(Milliseconds now);
    bool hasEnded(Milliseconds now) const;

    const Rig& rig_;
    const Clip* clip_ = nullptr;
    const Clip* held_ = nullptr;  ///< the clip whose last pose stands
    const Clip* next_ = nullptr;  ///< waits for the end of what plays
    Pose pose_;
    Pose from_;              ///< the pose in which the clip found the figure
    Milliseconds since_{0};  ///< when the clip started, moved on by each round of its loop
    Milliseconds begun_{0};  ///< when `from_` stood
    bool freed_ = false;
    bool leaving_ = false;
    bool returning_ = false;
    Clip rest_;
};

}  // namespace agent
