#pragma once

#include "agent/rig.h"
#include "agent/voice/voice.h"

namespace agent {

/// Gives a pose of the rig this mouth; a figure that lacks it keeps the one it has.
void setMouth(Pose& pose, const Rig& rig, Mouth mouth);

}  // namespace agent
