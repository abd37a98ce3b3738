#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "agent/rig.h"

namespace agent {

/// What the mouth does for a sound: open vowels, spread ones, round ones, lips on teeth, tongue, lips
/// pressed, lips pursed.
enum class Mouth { closed, A, E, I, O, U, F, L, M, W };

/// The name of the slot that draws a mouth.
std::string_view slotName(Mouth mouth);

/// The slot of a bone that draws the mouth, or else the one most like it; nothing if the bone has none of
/// them.
std::optional<std::size_t> mouthSlot(const Bone& bone, Mouth mouth);

/// Gives a pose of the rig this mouth. A figure that has none of the kind keeps the one it has.
void setMouth(Pose& pose, const Rig& rig, Mouth mouth);

}  // namespace agent
