#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "agent/hearing/wav_reader.h"

namespace agent {

/// Cuts a stream of sound into phrases: what is clearly louder than the room, up to a pause of 0.6 seconds,
/// of which they keep 0.16. Keeps at most eleven seconds.
class PhraseFinder {
public:
    /// Loudness of the room, the mean square of its samples; if it is not known, the finder follows it.
    explicit PhraseFinder(std::optional<double> room = {});

    /// Takes more of the stream. Returns the phrase that has just ended, if one has.
    std::optional<Samples> feed(std::span<const std::int16_t> samples);

    /// The stream is over. Returns the phrase that was under way, if there was one.
    std::optional<Samples> finish();

    /// Whether somebody is speaking.
    bool speaking() const { return speaking_; }
    /// Whether a phrase is under way that may have ended: nobody has spoken for 0.04 seconds.
    bool pausing() const;
    /// What has been said of the phrase up to now, while somebody is speaking.
    const Samples& phrase() const { return phrase_; }
    /// The phrase as it will be if it ends with this pause.
    Samples phraseUpToPause() const;

private:
    bool takeFrame(std::span<const std::int16_t> frame);
    void followRoom(double loudness);
    std::optional<Samples> take();

    bool roomKnown_;
    std::optional<double> room_;
    std::deque<double> recent_;  ///< loudness of the last seconds
    Samples rest_;               ///< of a frame that is not full yet
    Samples phrase_;             ///< or, while nobody speaks, what comes just before one
    bool speaking_ = false;
    int loud_ = 0;  ///< frames in a row, and below
    int quiet_ = 0;
    int voiced_ = 0;  ///< frames of the phrase that are loud
};

/// The phrases of a recording, in their order.
std::vector<Samples> findPhrases(const Samples& recording);

}  // namespace agent
