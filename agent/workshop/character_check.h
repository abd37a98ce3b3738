#pragma once

#include <string>
#include <vector>

namespace agent {

/// What is wrong with the character package `name` below the folder `root`, a sentence each, which says where
/// (file, bone, clip, key or time). Empty if the character is complete: it can be loaded, its art has every
/// part, it has all animations, which end as their family says, all shapes of the mouth and eyes, and no
/// picture of any animation is cut off at the edge of the frame. Needs a QGuiApplication. Takes seconds.
std::vector<std::string> checkCharacter(const std::string& root, const std::string& name);

}  // namespace agent
