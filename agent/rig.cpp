#include "agent/rig.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "agent/bytes.h"

namespace agent {
namespace {

Affine localTransform(const Bone& bone, const BoneState& state) {
    const double angle = state[Channel::rot] * std::numbers::pi / 180;
    const double sine = std::sin(angle);
    const double cosine = std::cos(angle);
    const Affine turned{cosine * state[Channel::sx],     sine * state[Channel::sx],
                        -sine * state[Channel::sy],      cosine * state[Channel::sy],
                        bone.pivotX + state[Channel::x], bone.pivotY + state[Channel::y]};
    return turned * Affine{.e = -bone.pivotX, .f = -bone.pivotY};
}

}  // namespace

const Clip* Rig::clip(std::string_view clipName) const {
    const auto found = std::ranges::find_if(clips, [&](auto& c) { return sameName(c.name, clipName); });
    return found == clips.end() ? nullptr : &*found;
}

std::optional<std::size_t> Rig::bone(std::string_view id) const {
    const auto found = std::ranges::find(bones, id, &Bone::id);
    if (found == bones.end()) return std::nullopt;
    return static_cast<std::size_t>(found - bones.begin());
}

std::optional<std::size_t> slotOf(const Bone& bone, std::string_view name) {
    const auto found = std::ranges::find(bone.slots, name, &Slot::name);
    if (found == bone.slots.end()) return std::nullopt;
    return static_cast<std::size_t>(found - bone.slots.begin());
}

Affine Affine::operator*(const Affine& inner) const {
    return {a * inner.a + c * inner.b, b * inner.a + d * inner.b,     a * inner.c + c * inner.d,
            b * inner.c + d * inner.d, a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
}

std::vector<PlacedPart> placeParts(const Rig& rig, const Pose& pose) {
    std::vector<PlacedPart> all;
    all.reserve(rig.bones.size());
    for (std::size_t i = 0; i < rig.bones.size(); ++i) {
        const Bone& bone = rig.bones[i];
        const BoneState& state = pose[i];
        PlacedPart part;
        part.art = bone.slots[state.slot].art;
        if (bone.parent) {
            const PlacedPart& parent = all[*bone.parent];
            part.transform = parent.transform;
            part.alpha = parent.alpha;
            part.z = parent.z;
        }
        if (bone.mirror) part.transform = part.transform * Affine{.a = -1, .e = rig.width};
        part.transform = part.transform * localTransform(bone, state);
        part.alpha *= std::clamp(state[Channel::alpha], 0.0, 1.0);
        part.z += state[Channel::z];
        all.push_back(part);
    }
    std::erase_if(all, [](const PlacedPart& part) { return part.art.empty() || part.alpha <= 0; });
    std::ranges::stable_sort(all, {}, &PlacedPart::z);
    return all;
}

}  // namespace agent
