#pragma once

#include "agent/hearing/dictionary.h"

namespace agent {

/// Sounds out words as the speech synthesiser would say them. May be used in any thread.
SoundOut soundOutByVoice();

}  // namespace agent
