#include "agent/hearing/cepstra.h"

#include <sphinxbase/fe.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

namespace agent {
namespace {

/// The beginning of a phrase, with what comes before its first word: it tells how loud the phrase is, and the
/// mean of its first cepstra.
constexpr std::size_t firstSamples = hearingRate * 7 / 10;
constexpr std::size_t firstCepstra = 67;
/// So many more have a mean in common.
constexpr std::size_t cepstraWithOneMean = 10;

constexpr int usualPeak = 12000;
constexpr double mostGain = 50;
/// The model knows no perfect silence: nowhere is it stiller than in a recording room.
constexpr int roomNoise = 50;

}  // namespace

void Cepstra::Free::operator()(fe_s* frontEnd) const {
    fe_free(frontEnd);
}

std::unique_ptr<Cepstra> Cepstra::make(cmd_ln_s* configuration) {
    FrontEnd frontEnd(fe_init_auto_r(configuration));
    if (!frontEnd || fe_get_output_size(frontEnd.get()) != int{std::tuple_size_v<Cepstrum>}) return nullptr;
    return std::unique_ptr<Cepstra>(new Cepstra(std::move(frontEnd)));
}

void Cepstra::begin() {
    first_.clear();
    gain_ = 0;
    noise_.seed();  // the same each time: a phrase is always heard the same way
    analysed_.clear();
    taken_ = 0;
    sum_ = {};
    fe_start_utt(frontEnd_.get());
}

std::vector<Cepstrum> Cepstra::feed(std::span<const std::int16_t> samples) {
    if (gain_ == 0) {
        const auto missing = samples.first(std::min(firstSamples - first_.size(), samples.size()));
        first_.insert(first_.end(), missing.begin(), missing.end());
        if (first_.size() < firstSamples) return {};
        analyseFirst();
        samples = samples.subspan(missing.size());
    }
    analyse(samples);
    std::vector<Cepstrum> taken;
    std::size_t end = taken_ == 0 ? firstCepstra : taken_ + cepstraWithOneMean;
    for (; end <= analysed_.size(); end += cepstraWithOneMean) takeUpTo(end, taken);
    return taken;
}

std::vector<Cepstrum> Cepstra::finish() {
    if (gain_ == 0) analyseFirst();
    Cepstrum last{};
    std::int32_t count = 0;
    if (fe_end_utt(frontEnd_.get(), last.data(), &count) == 0 && count > 0) analysed_.push_back(last);
    std::vector<Cepstrum> taken;
    takeUpTo(analysed_.size(), taken);
    return taken;
}

void Cepstra::analyseFirst() {
    int peak = 1;
    for (const std::int16_t sample : first_) peak = std::max(peak, std::abs(int{sample}));
    gain_ = std::min(static_cast<double>(usualPeak) / peak, mostGain);
    analyse(first_);
}

void Cepstra::analyse(std::span<const std::int16_t> samples) {
    using Limits = std::numeric_limits<std::int16_t>;
    Samples prepared;
    prepared.reserve(samples.size());
    for (const std::int16_t sample : samples) {
        const double noise = static_cast<int>(noise_() % (2 * roomNoise + 1)) - roomNoise;
        const double value = std::clamp<double>(sample * gain_ + noise, Limits::min(), Limits::max());
        prepared.push_back(static_cast<std::int16_t>(std::lround(value)));
    }
    const std::int16_t* at = prepared.data();
    std::size_t left = prepared.size();
    while (left > 0) {
        std::array<Cepstrum, 32> cepstra{};
        std::array<mfcc_t*, cepstra.size()> rows{};
        std::ranges::transform(cepstra, rows.begin(), [](Cepstrum& cepstrum) { return cepstrum.data(); });
        std::int32_t count = cepstra.size();
        std::int32_t first = 0;
        const std::size_t before = left;
        if (fe_process_frames(frontEnd_.get(), &at, &left, rows.data(), &count, &first) < 0) return;
        analysed_.insert(analysed_.end(), cepstra.begin(), cepstra.begin() + count);
        if (count == 0 && left == before) return;
    }
}

void Cepstra::takeUpTo(std::size_t end, std::vector<Cepstrum>& taken) {
    for (std::size_t i = taken_; i < end; ++i) {
        for (std::size_t part = 0; part < sum_.size(); ++part) sum_.at(part) += analysed_[i].at(part);
    }
    for (; taken_ < end; ++taken_) {
        Cepstrum& cepstrum = taken.emplace_back(analysed_[taken_]);
        for (std::size_t part = 0; part < sum_.size(); ++part)
            cepstrum.at(part) -= static_cast<float>(sum_.at(part) / static_cast<double>(end));
    }
}

}  // namespace agent
