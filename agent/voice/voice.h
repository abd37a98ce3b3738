#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "agent/mouth.h"
#include "agent/request_queue.h"
#include "agent/rig.h"
#include "agent/speech_text.h"

namespace agent {

class Recordings;

/// What a voice tells while it speaks a line. None is called after `onEnd` or after `stop`.
struct VoiceEvents {
    std::function<void(std::size_t word)> onWord = {};  ///< the word of that index is being said now
    std::function<void(Mouth)> onMouth = {};
    std::function<void(std::uint32_t number)> onBookmark = {};  ///< the mark `\Mrk` is passed
    std::function<void()> onEnd = {};                           ///< the line is over
};

/// Says lines, one at a time, without keeping its caller waiting. Events come in turns of the caller's loop.
class Voice {
public:
    virtual ~Voice() = default;

    /// Begins a line; one under way is stopped first.
    virtual void speak(SpokenLine line, VoiceEvents events) = 0;

    /// Falls silent within a few milliseconds. Nothing to stop is no failure.
    virtual void stop() = 0;
};

/// What the person chose; what is left open is the character's own.
struct VoiceSettings {
    /// One of the synthesiser's voices ("en-us"), or of the clearer one ("flite:slt"); unknown: the
    /// character's.
    std::optional<std::string> name;
    std::optional<int> rate;   ///< words a minute, 80 to 450
    std::optional<int> pitch;  ///< 0 to 99
    /// "default": the sound device, or none if there is none; "none": silence; "file:PATH": all that is said
    /// goes into a WAV file, one of `recordings`. Without sound, words come at the same pace.
    std::string device = "default";
    /// The files that this voice shares with others, earlier ones too; null: it has its own.
    std::shared_ptr<Recordings> recordings = {};
};

/// A voice of the speech synthesiser, in a thread of its own that begins to load it at once. `post` may be
/// called from that thread, until the voice is destroyed.
std::unique_ptr<Voice> makeVoice(const VoiceSettings& settings, const CharacterVoice& character, Post post);

/// The names of the clearer voices that this machine has ("flite:slt"). Takes some milliseconds.
std::vector<std::string> installedVoices();

}  // namespace agent
