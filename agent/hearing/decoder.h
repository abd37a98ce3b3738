#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
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

/// Reads one piece of audio in two ways: as one of the commands, and as any sounds. Each of the ways has what
/// it works with to itself: two threads may read at once, in one way each.
class Decoder {
public:
    /// Nothing if a part of the model can't be read.
    static std::unique_ptr<Decoder> load(const HearingModel& model,
                                         const std::vector<CommandGraph>& commands);
    virtual ~Decoder() = default;

    /// One channel at 16000 samples a second. An empty reading: nothing fits, or nothing was said.
    virtual Reading asCommand(std::span<const std::int16_t> samples) = 0;
    virtual Reading asSounds(std::span<const std::int16_t> samples) = 0;
};

}  // namespace agent
