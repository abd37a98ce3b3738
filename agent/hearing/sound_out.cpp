#include "agent/hearing/sound_out.h"

#include <memory>

#include "agent/voice/synthesizer.h"

namespace agent {

SoundOut soundOutByVoice() {
    return [synthesizer = std::make_shared<const Synthesizer>()](std::string_view word) {
        return phonesFromIpa(synthesizer->phonetic(word));
    };
}

}  // namespace agent
