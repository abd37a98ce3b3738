#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>

#include "agent/voice/audio_sink.h"
#include "agent/voice/synthesizer.h"

namespace agent {

/// What a player needs of the thread it works in.
struct PlayerHost {
    int sampleRate;
    std::function<bool()> stopped;                 ///< whether to break off
    WaitUntil wait;                                ///< returns at once when stopped
    std::function<void(const SpeechEvent&)> tell;  ///< told of each event when its sample is heard
};

/// Plays utterances one behind the other without a gap, and tells their events as they are heard. Where the
/// device is lost, the rest is silence at the same pace.
class Player {
public:
    Player(std::unique_ptr<AudioSink> sink, PlayerHost host);

    /// Returns when the utterance has been handed to the device, which is before it has been heard.
    void play(const Utterance& utterance);

    /// Returns when all has been heard, or at once when stopped.
    void finish();

private:
    void write(std::span<const std::int16_t> samples);
    void tellHeard();
    std::chrono::microseconds delay();

    std::unique_ptr<AudioSink> sink_;
    PlayerHost host_;
    std::deque<SpeechEvent> events_;  ///< not yet told; their samples count from the player's beginning
    std::size_t written_ = 0;
};

}  // namespace agent
