#include "agent/mouth.h"

#include <array>

namespace agent {
namespace {

constexpr std::array<std::string_view, 7> mouthSlots = {"closed", "A", "E", "O", "U", "F", "L"};

}  // namespace

void setMouth(Pose& pose, const Rig& rig, Mouth mouth) {
    const auto bone = rig.bone("mouth");
    if (!bone) return;
    if (const auto slot = slotOf(rig.bones[*bone], mouthSlots.at(static_cast<std::size_t>(mouth)))) {
        pose[*bone].slot = *slot;
    }
}

}  // namespace agent
