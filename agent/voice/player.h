#pragma once

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>

#include "agent/voice/audio_sink.h"
#include "agent/voice/synthesizer.h"

namespace agent {

/// What a player needs from outside.
struct PlayerHost {
    int sampleRate;
    std::function<std::chrono::steady_clock::time_point()> now;
    std::function<void(const SpeechEvent&)> tell;  ///< told of each event when its sample is heard
};

/// Plays utterances one behind the other without a gap, and tells their events as they are heard. It never
/// waits: whoever owns it pumps. A device that is lost, or whose position stands still, is left, and the rest
/// is silence at the pace at which it would have played.
class Player {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// A null sink is silence.
    Player(std::unique_ptr<AudioSink> sink, PlayerHost host);

    /// Puts an utterance behind those before it.
    void add(Utterance utterance);

    /// Says that nothing more is added.
    void close() { closed_ = true; }

    /// Hands the sink what it has to have by now, and tells what is heard. Returns when to be called next,
    /// unless something is added.
    TimePoint pump();

    /// Whether it is closed, and all has been heard and told.
    bool done() const;

    /// Falls silent. Nothing is told any more.
    void stop();

    /// How long what was added plays on, counted from what is heard now.
    std::chrono::microseconds left() const;

private:
    void updateHeard(TimePoint now);
    void leaveSink(TimePoint now);
    std::chrono::milliseconds patienceNow() const;
    void handOver(TimePoint now);
    void tellHeard();
    std::size_t added() const { return written_ + waiting_.size(); }
    std::size_t samplesIn(std::chrono::steady_clock::duration time) const;
    std::chrono::microseconds timeOf(std::size_t samples) const;

    /// A moment at which a sample was heard.
    struct Position {
        TimePoint at;
        std::size_t sample = 0;
    };

    std::unique_ptr<AudioSink> sink_;
    PlayerHost host_;
    std::deque<std::int16_t> waiting_;
    std::deque<SpeechEvent> events_;  ///< not yet told; their samples count from the player's beginning
    std::size_t written_ = 0;
    std::size_t heard_ = 0;
    bool begun_ = false;
    bool deviceTells_ = false;  ///< what it has played
    bool closed_ = false;
    Position start_;         ///< when there was last nothing left to hear
    Position lastProgress_;  ///< of the device
};

}  // namespace agent
