#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "agent/mouth.h"
#include "agent/voice/synthesizer.h"

namespace agent {

/// The mouth of a sound: what it begins with, and for a diphthong what it glides to.
struct Viseme {
    Mouth mouth = Mouth::closed;
    std::optional<Mouth> glide = {};

    bool operator==(const Viseme&) const = default;
};

/// Of a sound as espeak names it ("eI", "tS"), in whatever language; what is no sound is closed.
Viseme visemeOfEspeak(std::string_view phoneme);

/// Of a sound as flite names it ("ey", "ch"); what is no sound is closed.
Viseme visemeOfFlite(std::string_view phone);

/// A sound of an utterance, from this sample to the next sound's.
struct TimedViseme {
    std::size_t sample = 0;
    Viseme viseme;
};

/// Adds what the mouth does for sounds in order of time, the last of which lasts to `end`: the mouth is
/// closed then. The utterance's events are in order afterwards.
void addMouths(Utterance& utterance, std::span<const TimedViseme> sounds, std::size_t end);

}  // namespace agent
