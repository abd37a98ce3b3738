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

/// Where the acoustic model, its dictionary and its language model lie.
struct HearingModel {
    std::string acoustic = "/usr/share/pocketsphinx/model/en-us/en-us";
    std::string dictionary = "/usr/share/pocketsphinx/model/en-us/cmudict-en-us.dict";
    std::string language = "/usr/share/pocketsphinx/model/en-us/en-us.lm.bin";
};

/// Reads one piece of audio in different ways: as one of the commands, as any frequent English words, as any
/// sounds. Each of the ways has what it works with to itself: three threads may read at once, in one way
/// each.
class Decoder {
public:
    /// Nothing if a part of the model can't be read.
    static std::unique_ptr<Decoder> load(const HearingModel& model, const Dictionary& dictionary,
                                         const std::vector<CommandGraph>& commands);
    virtual ~Decoder() = default;

    /// One channel at 16000 samples a second. An empty reading: nothing fits, or nothing was said.
    virtual Reading asCommand(std::span<const std::int16_t> samples) = 0;
    virtual Reading asWords(std::span<const std::int16_t> samples) = 0;
    virtual Reading asSounds(std::span<const std::int16_t> samples) = 0;
};

}  // namespace agent
