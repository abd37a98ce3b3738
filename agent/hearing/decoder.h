#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "agent/hearing/command_graph.h"
#include "agent/hearing/dictionary.h"

namespace agent {

/// A stretch of audio and what was taken for it. Frames are a hundredth of a second.
struct HeardPiece {
    enum class Kind { silence, word, sound };
    Kind kind = Kind::silence;
    std::size_t command = 0;  ///< of a word that belongs to a command: which one
    std::string word = {};    ///< empty for a silence and a sound
    Phones phones = {};       ///< none for a silence
    int first = 0;            ///< frame
    int frames = 0;
    double fit = 0;  ///< log likelihood; comparable between the readings of one piece of audio

    bool operator==(const HeardPiece&) const = default;
};
using Reading = std::vector<HeardPiece>;

/// The folder of the model that writes down what was said, as this library was built for.
std::string defaultWritingFolder();

/// Where the models lie: the acoustic one with its dictionary, and that of a `WritingModel`.
struct HearingModel {
    std::string acoustic = "/usr/share/pocketsphinx/model/en-us/en-us";
    std::string dictionary = "/usr/share/pocketsphinx/model/en-us/cmudict-en-us.dict";
    std::string writing = defaultWritingFolder();
};

/// Reads a phrase in one way. Used by one thread at a time.
class Decoder {
public:
    virtual ~Decoder() = default;

    /// Reads what has been said of a phrase up to now, as far as it is not stopped. That changes nothing but
    /// how soon a phrase that begins with it is read.
    virtual void readAhead(std::span<const std::int16_t> beginning, const std::stop_token& stop) = 0;

    /// One channel at 16000 samples a second. An empty reading: nothing fits, nothing was said, or it was
    /// stopped.
    virtual Reading read(std::span<const std::int16_t> phrase, const std::stop_token& stop) = 0;
};

/// The ways to read a phrase; each has what it works with to itself.
struct Decoders {
    std::unique_ptr<Decoder> commands;  ///< as one of the commands
    std::unique_ptr<Decoder> sounds;    ///< as any sounds
};

/// Nothing if a part of the model can't be read.
std::optional<Decoders> loadDecoders(const HearingModel& model, const std::vector<CommandGraph>& commands);

}  // namespace agent
