#include "agent/hearing/wav_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/hearing/spoken.h"

namespace {

using namespace agent;
using namespace velmora::test;
using testing::Each;
using testing::HasSubstr;

TEST(WavReader, GivesTheSameSoundForEveryWidthRateAndNumberOfChannels) {
    // Half of full loudness, steady.
    const struct {
        WavForm form;
        std::string frame;
    } cases[] = {
        {{.bits = 8}, "\xc0"},
        {{.bits = 16}, std::string("\x00\x40", 2)},
        {{.bits = 24}, std::string("\x00\x00\x40", 3)},
        {{.bits = 32}, std::string("\x00\x00\x00\x40", 4)},
        {{.kind = 3, .bits = 32}, std::string("\x00\x00\x00\x3f", 4)},
        {{.channels = 2}, std::string("\x00\x00\xff\x7f", 4)},
        {{.rate = 8000}, std::string("\x00\x40", 2)},
        {{.rate = 44100}, std::string("\x00\x40", 2)},
        {{.rate = 192000}, std::string("\x00\x40", 2)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
                     << c.form.bits << " bits, " << c.form.channels << " channels, " << c.form.rate);
        std::string data;
        for (unsigned frame = 0; frame < c.form.rate / 2; ++frame) data += c.frame;
        const auto promised = static_cast<std::uint32_t>(data.size());
        const auto read = readWav(temporaryFile("a.wav", wavBytes(c.form, data, promised)));
        const auto* samples = std::get_if<Samples>(&read);
        ASSERT_NE(samples, nullptr) << std::get<std::string>(read);
        EXPECT_NEAR(static_cast<double>(samples->size()), hearingRate / 2, 20);
        EXPECT_NEAR(samples->at(samples->size() / 2), 16384, 300);
    }
}

TEST(WavReader, TakesWhatIsThereWhereTheHeaderPromisesMore) {
    for (const std::uint32_t promised : {4U, 100000U, 0xffffffffU}) {
        const auto read = readWav(temporaryFile("a.wav", wavBytes({}, std::string(400, '\0'), promised)));
        const auto* samples = std::get_if<Samples>(&read);
        ASSERT_NE(samples, nullptr) << promised;
        EXPECT_LE(samples->size(), 200);
        EXPECT_THAT(*samples, Each(0));
    }
}

TEST(WavReader, RefusesWhatIsNoSoundWithASentence) {
    const std::string good = wavBytes({}, "1234", 4);
    const struct {
        std::string bytes;
        const char* sentence;
    } cases[] = {
        {"", "not a WAV file"},
        {"RIFF", "not a WAV file"},
        {std::string(100, '\xff'), "not a WAV file"},
        {good.substr(0, 30), "not a WAV file"},
        {good.substr(0, 43), "not a WAV file"},
        {wavBytes({.channels = 0}, "1234", 4), "not a WAV file"},
        {wavBytes({.channels = 9}, "1234", 4), "not a WAV file"},
        {wavBytes({.rate = 0}, "1234", 4), "not a WAV file"},
        {wavBytes({.rate = 0xffffffff}, "1234", 4), "not a WAV file"},
        {wavBytes({.bits = 12}, "1234", 4), "not a WAV file"},
        {wavBytes({.kind = 85}, "1234", 4), "not a WAV file"},
        {wavBytes({.rate = 1000, .bits = 8}, std::string(600'000, '\x80'), 600'000), "ten minutes"},
    };
    for (const auto& c : cases) {
        const auto read = readWav(temporaryFile("a.wav", c.bytes));
        const auto* sentence = std::get_if<std::string>(&read);
        ASSERT_NE(sentence, nullptr) << testing::PrintToString(c.bytes.substr(0, 60));
        EXPECT_THAT(*sentence, HasSubstr(c.sentence));
    }
    for (const char* path : {"/nonexistent/a.wav", "/", "/dev/zero", ""})
        EXPECT_TRUE(std::holds_alternative<std::string>(readWav(path))) << path;
}

}  // namespace
