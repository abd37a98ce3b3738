#include "agent/animator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "agent/bytes.h"

namespace agent {
namespace {

// Long enough that no limb jumps, short enough not to delay the clip.
constexpr Milliseconds entry{160};

double eased(Ease ease, double part) {
    switch (ease) {
        case Ease::linear:
            return part;
        case Ease::inOut:
            return part * part * (3 - 2 * part);
        case Ease::back: {
            constexpr double overshoot = 1.4;
            const double left = part - 1;
            return 1 + left * left * ((overshoot + 1) * left + overshoot);
        }
        case Ease::steps: {
            constexpr double count = 3;
            constexpr double moving = 0.45;  // of each step; then it halts
            const double step = std::floor(part * count);
            return (step + eased(Ease::inOut, std::min(1.0, (part * count - step) / moving))) / count;
        }
    }
    return part;
}

}  // namespace

Pose blend(const Pose& from, const Pose& to, double part) {
    Pose result = to;
    for (std::size_t bone = 0; bone < to.size(); ++bone) {
        for (std::size_t i = 0; i < channelCount; ++i) {
            const double start = from[bone].values[i];
            if (start != to[bone].values[i])
                result[bone].values[i] = start + (to[bone].values[i] - start) * part;
        }
    }
    return result;
}

Pose poseAt(const Clip& clip, Milliseconds time) {
    const auto after = std::ranges::upper_bound(clip.keys, time, {}, &Key::at);
    if (after == clip.keys.begin()) return after->pose;
    const Key& before = *(after - 1);
    if (after == clip.keys.end()) return before.pose;
    const double part = static_cast<double>((time - before.at).count()) /
                        static_cast<double>((after->at - before.at).count());
    Pose pose = blend(before.pose, after->pose, eased(after->ease, part));
    for (std::size_t bone = 0; bone < pose.size(); ++bone) pose[bone].slot = before.pose[bone].slot;
    return pose;
}

Animator::Animator(const Rig& rig) : rig_(rig), pose_(rig.rest) {
    rest_.keys = {{.at = entry, .ease = Ease::inOut, .pose = rig.rest}};
}

void Animator::begin(const Clip& clip, Milliseconds now) {
    from_ = pose_;
    clip_ = &clip;
    held_ = nullptr;
    since_ = begun_ = now;
    freed_ = leaving_ = returning_ = false;
}

void Animator::start(const Clip& clip, Milliseconds now) {
    next_ = nullptr;
    begin(clip, now);
    advance(now);
}

void Animator::follow(const Clip& clip, Milliseconds now) {
    next_ = &clip;
    leaveLoop(now);
    advance(now);
}

void Animator::place(const Pose& pose) {
    clip_ = held_ = next_ = nullptr;
    pose_ = pose;
}

void Animator::leaveLoop(Milliseconds now) {
    if (clip_ == nullptr || !clip_->loop || leaving_) return;
    leaving_ = true;
    wrapLoop(now);
}

void Animator::settle(Milliseconds now) {
    next_ = nullptr;
    if (atRest() || clip_ == &rest_) return;
    const Clip* back = held_ != nullptr ? rig_.clip(held_->next) : nullptr;
    if (back != nullptr && !returning_) {
        beginReturn(*back, now);
    } else {
        begin(rest_, now);
    }
    advance(now);
}

void Animator::wrapLoop(Milliseconds now) {
    if (!clip_->loop) return;
    const auto [start, end] = *clip_->loop;
    const auto time = now - since_;
    if (time < start) return;
    if (time >= end) {
        if (!leaving_) since_ += (time - end) / (end - start) * (end - start) + (end - start);
    } else if (leaving_) {
        // The round is broken off: whoever waits for the exit does not wait for the round.
        from_ = pose_;
        begun_ = now;
        since_ = now - end;
    }
}

bool Animator::hasEnded(Milliseconds now) const {
    return now - since_ >= clip_->length() && now - begun_ >= entry;
}

// The clip that takes a held pose back. It ends what it takes back, whatever it says of itself.
void Animator::beginReturn(const Clip& back, Milliseconds now) {
    begin(back, now);
    returning_ = leaving_ = true;
}

void Animator::beginNext(Milliseconds now) {
    if (next_ == nullptr) return;
    const Clip* back = held_ != nullptr && !returning_ ? rig_.clip(held_->next) : nullptr;
    const bool goesOn = back == nullptr || back == next_ || sameName(held_->next, next_->next);
    if (!goesOn) return beginReturn(*back, now);
    begin(*std::exchange(next_, nullptr), now);
}

void Animator::advance(Milliseconds now) {
    if (clip_ == nullptr) beginNext(now);
    if (clip_ == nullptr) return;
    freed_ = freed_ || (clip_->free && now - since_ >= *clip_->free);
    wrapLoop(now);
    pose_ = poseAt(*clip_, now - since_);
    if (const auto age = now - begun_; age < entry) {
        pose_ = blend(from_, pose_, eased(Ease::inOut, static_cast<double>(age.count()) / entry.count()));
    }
    if (!hasEnded(now)) return;
    held_ = std::exchange(clip_, nullptr);
    beginNext(now);
}

bool Animator::free() const {
    if (next_ != nullptr) return false;
    return clip_ == nullptr || clip_ == &rest_ || freed_;
}

}  // namespace agent
