#include "agent/voice/synthesizer.h"

#include <algorithm>

namespace agent {
namespace {

std::unique_ptr<Synthesizer> openNamed(std::string_view name) {
    return name.starts_with(clearerVoices) ? openFlite(name.substr(clearerVoices.size())) : nullptr;
}

}  // namespace

VoiceParameters withDelivery(VoiceParameters own, const Delivery& delivery) {
    if (delivery.rate) own.rate = *delivery.rate;
    if (delivery.pitch) own.hertz = *delivery.pitch;
    if (delivery.character == Delivery::Character::monotone) own.range = 0;
    own.whisper = delivery.character == Delivery::Character::whisper;
    return own;
}

std::unique_ptr<Synthesizer> openSynthesizer(const VoiceParameters& parameters) {
    if (auto named = openNamed(parameters.name)) return named;
    const bool lacking = parameters.name.starts_with(clearerVoices);
    auto fallback = lacking ? openNamed(parameters.fallback) : nullptr;
    return fallback ? std::move(fallback) : openEspeak();
}

Utterance estimatePace(std::span<const SpokenWord> words, std::size_t first, int wordsPerMinute,
                       int sampleRate) {
    constexpr std::size_t averageLetters = 6;
    const auto rate = static_cast<std::size_t>(std::clamp(wordsPerMinute, 80, 450));
    const std::size_t perLetter = static_cast<std::size_t>(sampleRate) * 60 / rate / averageLetters;
    std::size_t end = 0;
    Utterance silence;
    for (const auto& word : words) {
        silence.events.push_back({end, first++});
        silence.events.push_back({end, Mouth::A});
        end += perLetter * std::clamp<std::size_t>(word.spoken.size() + 1, 2, 40);
        silence.events.push_back({end - perLetter, Mouth::closed});
    }
    silence.samples.resize(end);
    return silence;
}

void setVolume(Utterance& utterance, std::uint16_t volume) {
    if (volume == Delivery::fullVolume) return;
    for (std::int16_t& sample : utterance.samples) {
        sample = static_cast<std::int16_t>(sample * int{volume} / int{Delivery::fullVolume});
    }
}

}  // namespace agent
