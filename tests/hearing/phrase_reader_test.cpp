#include "agent/hearing/phrase_reader.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using namespace agent;

constexpr std::size_t tenth = hearingRate / 10;

/// Takes a phrase for no command; gives its length in tenths of a second in the place of a runner-up.
std::optional<HeardPhrase> measure(const Samples& phrase, const std::stop_token&) {
    return HeardPhrase{{}, {}, -100, {phrase.size() / tenth}};
}

int tenthsOf(PhraseReader& reader) {
    const auto heard = reader.result();
    return heard ? static_cast<int>(heard->runnersUp.at(0)) : 0;
}

struct Stretch {
    int tenths;
    std::int16_t loudness;
};

/// Feeds the stretches in pieces, up to the end of the phrase. Whether it has ended.
bool feed(PhraseReader& reader, std::initializer_list<Stretch> stretches) {
    for (const auto& [tenths, loudness] : stretches) {
        for (int i = 0; i < tenths; ++i) {
            Samples piece(tenth);
            for (std::size_t at = 0; at < piece.size(); ++at)
                piece[at] = static_cast<std::int16_t>(at % 2 == 0 ? loudness : -loudness);
            if (reader.feed(piece)) return true;
        }
    }
    return false;
}

TEST(PhraseReader, BeginsInThePauseAndAnswersForThePhraseUpToThere) {
    std::atomic<int> calls = 0;
    PhraseReader reader([&calls](const Samples& phrase, const std::stop_token& stop) {
        ++calls;
        return measure(phrase, stop);
    });
    ASSERT_TRUE(feed(reader, {{5, 20}, {10, 5000}, {20, 20}}));
    EXPECT_NEAR(tenthsOf(reader), 14, 1);
    EXPECT_EQ(calls, 1);
}

TEST(PhraseReader, WhatIsSaidAfterAHesitationBelongsToThePhrase) {
    PhraseReader reader(measure);
    ASSERT_TRUE(feed(reader, {{5, 20}, {10, 5000}, {4, 20}, {10, 5000}, {20, 20}}));
    EXPECT_GE(tenthsOf(reader), 26);
}

TEST(PhraseReader, ACommandThatIsUnderstoodInAPauseIsAnsweredThere) {
    PhraseReader reader([](const Samples&, const std::stop_token&) { return HeardPhrase{{}, 3, 50, {}}; });
    ASSERT_FALSE(feed(reader, {{5, 20}, {10, 5000}}));
    bool ended = feed(reader, {{2, 20}});
    // No more of the pause goes by; the answer comes from another thread.
    for (int i = 0; !ended && i < 100'000'000; ++i) ended = reader.feed({});
    EXPECT_TRUE(ended);
    EXPECT_EQ(reader.result()->command, 3);
}

TEST(PhraseReader, ACommandThatMayGoOnIsAnsweredAfterThePause) {
    PhraseReader reader([](const Samples&, const std::stop_token&) {
        return HeardPhrase{.words = {}, .command = 3, .score = 50, .runnersUp = {}, .mayGoOn = true};
    });
    ASSERT_FALSE(feed(reader, {{5, 20}, {10, 5000}, {4, 20}}));
    EXPECT_TRUE(feed(reader, {{3, 20}}));
    EXPECT_EQ(reader.result()->command, 3);
}

TEST(PhraseReader, ReadsWhatIsBeingSaidAndStopsThatInThePause) {
    std::atomic<std::size_t> longest = 0;
    std::atomic<int> calls = 0;
    std::atomic<bool> stopped = false;
    PhraseReader reader(
        [&](const Samples& phrase, const std::stop_token& stop) {
            while (!stopped) std::this_thread::yield();
            return measure(phrase, stop);
        },
        [&](const Samples& beginning, const std::stop_token& stop) {
            longest = beginning.size();
            // From half a second on it takes until it is stopped.
            while (++calls && beginning.size() > 5 * tenth && !stop.stop_requested())
                std::this_thread::yield();
            stopped = stop.stop_requested();
        });
    ASSERT_FALSE(feed(reader, {{5, 20}}));
    EXPECT_EQ(calls, 0);
    ASSERT_FALSE(feed(reader, {{8, 5000}}));
    // Nothing more is said for a while; reading goes on in another thread.
    for (int i = 0; longest < 8 * tenth && i < 100'000'000; ++i) reader.feed({});
    ASSERT_TRUE(feed(reader, {{20, 20}}));
    EXPECT_GT(tenthsOf(reader), 5);
    EXPECT_GE(longest, 8 * tenth);
    EXPECT_GE(calls, 1);
}

TEST(PhraseReader, StopsRecognisingWhenTheSpeakerGoesOn) {
    std::atomic<int> stopped = 0;
    PhraseReader reader([&stopped](const Samples& phrase, const std::stop_token& stop) {
        // The first time it takes until it is stopped.
        while (phrase.size() < 20 * tenth && !stop.stop_requested()) std::this_thread::yield();
        stopped += stop.stop_requested() ? 1 : 0;
        return stop.stop_requested() ? std::nullopt : measure(phrase, stop);
    });
    ASSERT_TRUE(feed(reader, {{5, 20}, {10, 5000}, {2, 20}, {10, 5000}, {20, 20}}));
    EXPECT_GE(tenthsOf(reader), 22);
    EXPECT_EQ(stopped, 1);
}

TEST(PhraseReader, ASpeakerWhoIsDoneNeedsNoPause) {
    PhraseReader reader(measure);
    EXPECT_FALSE(reader.finish());
    EXPECT_FALSE(feed(reader, {{5, 20}, {10, 5000}}));
    EXPECT_TRUE(reader.finish());
    EXPECT_GE(tenthsOf(reader), 10);
}

}  // namespace
