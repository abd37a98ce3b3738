#pragma once

#include <span>
#include <string_view>

namespace agent {

/// How an animation ends.
enum class Family {
    gesture,  ///< goes back to rest by itself
    held,     ///< keeps its last pose; `next` names the clip that takes it back
    looped,   ///< repeats a stretch until the next request
    leaving,  ///< ends out of sight
};

/// An animation that every character has.
struct AnimationName {
    std::string_view name;
    Family family = Family::gesture;
};

/// All animations that a character needs, in order of their names.
std::span<const AnimationName> animationNames();

/// The shapes of the mouth, which are slots of the bone "mouth": what a voice says is told in these.
std::span<const std::string_view> mouthShapes();

}  // namespace agent
