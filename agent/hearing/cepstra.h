#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "agent/hearing/wav_reader.h"

struct cmd_ln_s;
struct fe_s;

namespace agent {

/// What the acoustic model looks at for each hundredth of a second of sound.
using Cepstrum = std::array<float, 13>;

/// Turns a phrase into cepstra while it is being said. From each of them it takes away the mean of what has
/// been said up to a little later. In what pieces the phrase comes makes no difference.
class Cepstra {
public:
    /// As a decoder's configuration has them. Null if those are other ones.
    static std::unique_ptr<Cepstra> make(cmd_ln_s* configuration);

    /// Begins a phrase; what is not finished of another one is forgotten.
    void begin();
    /// Takes more of the phrase, one channel at 16000 samples a second. Returns the cepstra that are ready.
    std::vector<Cepstrum> feed(std::span<const std::int16_t> samples);
    /// The phrase is over. Returns the rest of them.
    std::vector<Cepstrum> finish();

private:
    struct Free {
        void operator()(fe_s* frontEnd) const;
    };

    using FrontEnd = std::unique_ptr<fe_s, Free>;
    explicit Cepstra(FrontEnd frontEnd) : frontEnd_(std::move(frontEnd)) {}

    void analyseFirst();
    void analyse(std::span<const std::int16_t> samples);
    void takeUpTo(std::size_t end, std::vector<Cepstrum>& taken);

    FrontEnd frontEnd_;
    Samples first_;    ///< of the phrase: too little as yet to tell how loud it is
    double gain_ = 0;  ///< 0: not known yet
    std::minstd_rand noise_;
    std::vector<Cepstrum> analysed_;
    std::size_t taken_ = 0;                                  ///< so many of them
    std::array<double, std::tuple_size_v<Cepstrum>> sum_{};  ///< of those
};

}  // namespace agent
