#include "agent/mouth.h"

#include <array>

namespace agent {
namespace {

struct Shape {
    std::string_view slot;
    std::string_view others;  // drawn in its place, the most like it first; one letter each, 'c' is closed
};

// In the order of Mouth.
constexpr std::array<Shape, 10> shapes = {{{"closed", ""},
                                           {"A", "EOI"},
                                           {"E", "IA"},
                                           {"I", "EA"},
                                           {"O", "UA"},
                                           {"U", "WO"},
                                           {"F", "Mc"},
                                           {"L", "EIA"},
                                           {"M", "c"},
                                           {"W", "UO"}}};

}  // namespace

std::string_view slotName(Mouth mouth) {
    return shapes.at(static_cast<std::size_t>(mouth)).slot;
}

std::optional<std::size_t> mouthSlot(const Bone& bone, Mouth mouth) {
    const Shape& shape = shapes.at(static_cast<std::size_t>(mouth));
    if (const auto own = slotOf(bone, shape.slot)) return own;
    for (std::size_t i = 0; i < shape.others.size(); ++i) {
        const auto other = shape.others[i] == 'c' ? slotName(Mouth::closed) : shape.others.substr(i, 1);
        if (const auto found = slotOf(bone, other)) return found;
    }
    return std::nullopt;
}

void setMouth(Pose& pose, const Rig& rig, Mouth mouth) {
    const auto bone = rig.bone("mouth");
    if (!bone) return;
    if (const auto slot = mouthSlot(rig.bones[*bone], mouth)) pose[*bone].slot = *slot;
}

}  // namespace agent
