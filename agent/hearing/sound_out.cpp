#include "agent/hearing/sound_out.h"

#include "agent/voice/synthesizer.h"

namespace agent {

SoundOut soundOutByVoice() {
    return [](std::string_view word) { return phonesFromIpa(phonetic(word)); };
}

}  // namespace agent
