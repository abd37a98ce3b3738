#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace agent {

using Milliseconds = std::chrono::milliseconds;

/// What of a bone a pose can change. `x` `y` move it, `rot` turns it clockwise by degrees around its pivot,
/// `sx` `sy` scale it there, `alpha` fades it and what hangs on it, `z` is its depth above its parent.
enum class Channel { x, y, rot, sx, sy, alpha, z };
inline constexpr std::size_t channelCount = 7;

/// One of the drawings a bone can show.
struct Slot {
    std::string name;
    std::string art;  ///< id of the drawing; empty shows nothing
};

/// A part of the figure that moves as one. Bones are ordered: a parent stands before its children.
struct Bone {
    std::string id;
    std::optional<std::size_t> parent;  ///< index of a bone before this one
    double pivotX = 0;
    double pivotY = 0;
    double z = 0;
    bool mirror = false;      ///< drawn reflected about the figure's middle, children included
    std::vector<Slot> slots;  ///< never empty; a bone with one drawing has one slot without a name
    std::size_t slot = 0;     ///< the slot shown where no pose says otherwise
};

/// The state of one bone.
struct BoneState {
    std::array<double, channelCount> values{0, 0, 0, 1, 1, 1, 0};
    std::size_t slot = 0;

    double& operator[](Channel channel) { return values[static_cast<std::size_t>(channel)]; }
    double operator[](Channel channel) const { return values[static_cast<std::size_t>(channel)]; }
    bool operator==(const BoneState&) const = default;
};

/// The state of every bone, in the rig's order.
using Pose = std::vector<BoneState>;

/// How a key is approached: evenly, gently at both ends, beyond and back, or in a few jerks with halts
/// between.
enum class Ease { linear, inOut, back, steps };

/// A pose at a time of a clip. Carry-over has been applied: it says the whole figure.
struct Key {
    Milliseconds at{0};
    Ease ease = Ease::inOut;
    Pose pose;
};

/// One animation.
struct Clip {
    std::string name;
    std::vector<Key> keys;  ///< at least one, in order of time
    /// The stretch that repeats until the next request; what follows it is the clip's own exit.
    std::optional<std::pair<Milliseconds, Milliseconds>> loop;
    std::string next;                  ///< the clip that takes a held pose back to rest; may be empty
    std::optional<Milliseconds> free;  ///< from here on the figure may speak while the clip plays on

    Milliseconds length() const { return keys.back().at; }
};

/// The voice that suits a figure.
struct CharacterVoice {
    std::string name = "en-us";
    int rate = 160;  ///< words a minute
    int pitch = 50;  ///< 0 to 99
    int range = 50;  ///< liveliness of the melody, 0 to 99
};

/// A figure: its bones, the pose it rests in, its animations.
struct Rig {
    std::string name;
    double width = 0;  ///< in the art's units, which are pixels at scale 1
    double height = 0;
    std::vector<Bone> bones;
    Pose rest;
    std::vector<Clip> clips;
    CharacterVoice voice;

    /// The clip of that name in any case, null if there is none. Lives as long as the rig.
    const Clip* clip(std::string_view clipName) const;

    /// The index of a bone, by its exact id.
    std::optional<std::size_t> bone(std::string_view id) const;
};

/// The index of a bone's slot, by its exact name.
std::optional<std::size_t> slotOf(const Bone& bone, std::string_view name);

/// A plane transformation: x' = a x + c y + e, y' = b x + d y + f.
struct Affine {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    /// First `inner`, then this.
    Affine operator*(const Affine& inner) const;
};

/// One drawing where it is to be painted.
struct PlacedPart {
    std::string_view art;  ///< lives as long as the rig
    Affine transform;
    double alpha = 1;
    double z = 0;
};

/// The visible parts of a pose, from back to front. `pose` has a state for each bone of the rig.
std::vector<PlacedPart> placeParts(const Rig& rig, const Pose& pose);

}  // namespace agent
