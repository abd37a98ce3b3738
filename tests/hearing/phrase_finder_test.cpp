#include "agent/hearing/phrase_finder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace {

using namespace agent;

constexpr std::size_t second = hearingRate;

// A room with voices from time to time: how many tenths of a second, and how loud.
Samples sound(std::initializer_list<std::pair<int, int>> stretches) {
    Samples samples;
    std::minstd_rand random;
    for (const auto& [tenths, loudness] : stretches) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(tenths) * second / 10; ++i) {
            const int value = loudness == 0 ? 0 : static_cast<int>(random() % (2UL * loudness)) - loudness;
            samples.push_back(static_cast<std::int16_t>(value));
        }
    }
    return samples;
}

TEST(PhraseFinder, CutsARecordingAtItsPauses) {
    const struct {
        const char* what;
        Samples recording;
        std::size_t phrases;
    } cases[] = {
        {"two phrases", sound({{5, 20}, {10, 5000}, {10, 20}, {10, 5000}, {10, 20}}), 2},
        {"a pause between words", sound({{5, 20}, {5, 5000}, {3, 20}, {5, 5000}, {10, 20}}), 1},
        {"a loud room", sound({{10, 800}, {10, 9000}, {10, 800}}), 1},
        {"perfect silence", sound({{50, 0}}), 0},
        {"a click", sound({{5, 20}, {1, 5000}, {5, 20}}), 0},
        {"from beginning to end, clipped", sound({{1, 3000}, {10, 32767}}), 1},
        {"nothing", {}, 0},
        {"half a minute without a pause", sound({{3, 20}, {290, 5000}, {30, 20}}), 3},
    };
    for (const auto& c : cases) {
        const auto phrases = findPhrases(c.recording);
        EXPECT_EQ(phrases.size(), c.phrases) << c.what;
        for (const Samples& phrase : phrases) EXPECT_LE(phrase.size(), 11 * second) << c.what;
    }
}

TEST(PhraseFinder, KeepsAMomentBeforeTheFirstLoudSound) {
    const auto phrases = findPhrases(sound({{20, 20}, {10, 5000}, {20, 20}}));
    ASSERT_EQ(phrases.size(), 1U);
    EXPECT_NEAR(static_cast<double>(phrases[0].size()), 1.9 * second, 0.15 * second);
}

TEST(PhraseFinder, APhraseUnderWayEndsWithTheStream) {
    PhraseFinder finder;
    EXPECT_FALSE(finder.feed(sound({{5, 20}, {8, 5000}})));
    EXPECT_TRUE(finder.speaking());
    EXPECT_TRUE(finder.finish());
    EXPECT_FALSE(finder.finish());
}

}  // namespace
