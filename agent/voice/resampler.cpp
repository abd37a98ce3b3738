#include "agent/voice/resampler.h"

namespace agent {

Resampler::Resampler(int from, int to)
    : from_(static_cast<std::size_t>(from)), to_(static_cast<std::size_t>(to)) {}

std::vector<std::int16_t> Resampler::resample(std::span<const std::int16_t> samples) {
    if (from_ == to_) return {samples.begin(), samples.end()};
    std::vector<std::int16_t> result;
    const std::size_t end = taken_ + samples.size();
    for (; given_ * from_ < end * to_; ++given_) {
        // Between the sample at `right` and the one before.
        const std::size_t right = given_ * from_ / to_;
        const double part = static_cast<double>(given_ * from_ % to_) / static_cast<double>(to_);
        const double before = right > taken_ ? samples[right - taken_ - 1] : last_;
        const double after = samples[right - taken_];
        result.push_back(static_cast<std::int16_t>(before + (after - before) * part));
    }
    if (!samples.empty()) last_ = samples.back();
    taken_ = end;
    return result;
}

}  // namespace agent
