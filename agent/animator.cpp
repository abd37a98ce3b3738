#include "agent/animator.h"

#include <algorithm>
#include <cmath>

namespace agent {
namespace {

// Long enough that no limb jumps, short enough not to delay the clip.
constexpr Milliseconds entry{160};

// A clip that repeats stands still at last: nobody watches it for minutes, and the processor rests.
constexpr int mostRounds = 4;

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

void Animator::start(const Clip& clip, Milliseconds now) {
    from_ = pose_;
    clip_ = &clip;
    held_ = nullptr;
    since_ = begun_ = now;
    rounds_ = 0;
    leaving_ = false;
    advance(now);
}

void Animator::place(const Pose& pose) {
    clip_ = held_ = nullptr;
    pose_ = pose;
}

void Animator::settle(Milliseconds now) {
    if (atRest() || clip_ == &rest_) return;
    const Clip* back = held_ != nullptr ? rig_.clip(held_->next) : nullptr;
    start(back != nullptr ? *back : rest_, now);
}

void Animator::wrapLoop(Milliseconds now) {
    if (!clip_->loop) return;
    const auto [start, end] = *clip_->loop;
    while (!leaving_ && now - since_ >= end) {
        leaving_ = ++rounds_ >= mostRounds;
        if (!leaving_) since_ += end - start;
    }
}

void Animator::advance(Milliseconds now) {
    now_ = now;
    if (clip_ == nullptr) return;
    wrapLoop(now);
    const auto time = now - since_;
    pose_ = poseAt(*clip_, time);
    if (const auto age = now - begun_; age < entry) {
        pose_ = blend(from_, pose_, eased(Ease::inOut, static_cast<double>(age.count()) / entry.count()));
    }
    if (time < clip_->length() || now - begun_ < entry) return;
    held_ = clip_;
    clip_ = nullptr;
}

bool Animator::free() const {
    if (clip_ == nullptr || clip_ == &rest_) return true;
    if (!clip_->free) return false;
    // Rounds move the start on; a clip that was once free stays so.
    return rounds_ > 0 || now_ - since_ >= *clip_->free;
}

}  // namespace agent
