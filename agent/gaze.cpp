#include "agent/gaze.h"

#include <algorithm>
#include <cmath>

namespace agent {
namespace {

// How far the pupils go, in parts of the figure's width, and how soon they are there.
constexpr double farthestAcross = 0.011;
constexpr double farthestDown = 0.007;
constexpr double unitsPerSecond = 12;
constexpr Milliseconds longestStep{100};

}  // namespace

Gaze::Gaze(const Rig& rig) : rig_(rig), bone_(rig.bone("gaze")) {}

void Gaze::aim(double right, double down, double reach) {
    const double distance = std::hypot(right, down);
    if (!(reach > 0) || !std::isfinite(distance)) return aimAhead();
    // The nearer the point, the less it takes: eyes that cross look foolish.
    const double much = 1 / (distance + reach / 2);
    target_ = {right * much * farthestAcross * rig_.width, down * much * farthestDown * rig_.width};
}

void Gaze::aimAhead() {
    target_ = {};
}

void Gaze::advance(Milliseconds now) {
    const auto passed = std::min(now - last_, longestStep);
    last_ = now;
    const double way = std::hypot(target_.x - now_.x, target_.y - now_.y);
    const double step = unitsPerSecond * static_cast<double>(passed.count()) / 1000;
    if (way <= step) {
        now_ = target_;
    } else {
        now_.x += (target_.x - now_.x) * step / way;
        now_.y += (target_.y - now_.y) * step / way;
    }
}

bool Gaze::moving() const {
    return bone_ && now_ != target_;
}

std::optional<std::pair<double, double>> Gaze::eyes() const {
    if (!bone_) return std::nullopt;
    return std::pair(rig_.bones[*bone_].pivotX, rig_.bones[*bone_].pivotY);
}

void Gaze::apply(Pose& pose) const {
    if (!bone_) return;
    BoneState& state = pose[*bone_];
    const BoneState& rest = rig_.rest[*bone_];
    const double turned =
        std::hypot(state[Channel::x] - rest[Channel::x], state[Channel::y] - rest[Channel::y]);
    const double part = std::max(0.0, 1 - turned);  // gives way as the pose takes over, without a jump
    state[Channel::x] += now_.x * part;
    state[Channel::y] += now_.y * part;
}

}  // namespace agent
