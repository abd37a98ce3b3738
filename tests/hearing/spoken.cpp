#include "tests/hearing/spoken.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "agent/voice/synthesizer.h"

namespace velmora::test {
namespace {

std::string little(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i) text += static_cast<char>((value >> (8 * i)) & 0xff);
    return text;
}

}  // namespace

agent::Samples spoken(const std::string& words, const std::string& speaker) {
    const auto synthesizer = agent::openEspeak();
    const agent::VoiceParameters voice{
        .name = speaker, .fallback = "en-us", .rate = 150, .pitch = 45, .range = 50};
    const auto parsed = agent::parseSpeech(words);
    std::string data;
    synthesizer->speak({.words = parsed.words}, voice,
                       {.receive =
                            [&data](const agent::Utterance& piece) {
                                for (const std::int16_t sample : piece.samples)
                                    data += little(static_cast<std::uint16_t>(sample), 2);
                            },
                        .stopped = [] { return false; }});
    const auto rate = static_cast<unsigned>(synthesizer->sampleRate());
    const auto read = agent::readWav(
        temporaryFile("spoken.wav", wavBytes({.rate = rate}, data, static_cast<std::uint32_t>(data.size()))));
    agent::Samples samples = std::get<agent::Samples>(read);
    constexpr std::size_t pause = agent::hearingRate;
    samples.insert(samples.begin(), pause / 2, 0);
    samples.insert(samples.end(), pause, 0);
    return samples;
}

std::string wavBytes(const WavForm& form, std::string_view data, std::uint32_t promised) {
    const unsigned frame = form.channels * form.bits / 8;
    return std::string("RIFF")
        .append(little(promised + 36, 4))
        .append("WAVEfmt ")
        .append(little(16, 4))
        .append(little(form.kind, 2))
        .append(little(form.channels, 2))
        .append(little(form.rate, 4))
        .append(little(form.rate * frame, 4))
        .append(little(frame, 2))
        .append(little(form.bits, 2))
        .append("data")
        .append(little(promised, 4))
        .append(data);
}

std::string wavBytes(const agent::Samples& samples) {
    std::string data;
    for (const std::int16_t sample : samples) data += little(static_cast<std::uint16_t>(sample), 2);
    return wavBytes({}, data, static_cast<std::uint32_t>(data.size()));
}

std::string temporaryFile(const std::string& name, std::string_view bytes) {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string path = testing::TempDir();
    if (test != nullptr) path.append(test->test_suite_name()).append(test->name());
    path.append(name);
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
}

}  // namespace velmora::test
