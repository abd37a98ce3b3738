#include "agent/voice/voice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "agent/voice/device_thread.h"
#include "agent/voice/recordings.h"
#include "agent/voice/speech_worker.h"
#include "tests/agent/hanging_device.h"
#include "tests/support/posted_steps.h"

namespace {

using namespace agent;
using namespace std::chrono_literals;
using testing::ElementsAre;
using velmora::PostedSteps;

std::unique_ptr<Voice> fastVoice(PostedSteps& loop, const std::string& device = "none") {
    return makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = device}, {}, loop.post());
}

struct Heard {
    std::vector<std::size_t> words;
    bool mouthMoved = false;
    bool ended = false;

    VoiceEvents events() {
        return {.onWord = [this](std::size_t word) { words.push_back(word); },
                .onMouth = [this](Mouth mouth) { mouthMoved = mouthMoved || mouth != Mouth::closed; },
                .onEnd = [this] { ended = true; }};
    }
};

TEST(Voice, TellsEveryWordAndTheEndWithoutASoundDevice) {
    PostedSteps loop;
    Heard heard;
    const auto voice = fastVoice(loop);
    voice->speak(parseSpeech("Good day to you."), heard.events());
    ASSERT_TRUE(loop.runUntil([&] { return heard.ended; }));
    EXPECT_THAT(heard.words, ElementsAre(0, 1, 2, 3));
    EXPECT_TRUE(heard.mouthMoved);
}

TEST(Voice, AStoppedLineTellsNothingMoreAndTheNextIsSaid) {
    PostedSteps loop;
    Heard first;
    Heard second;
    const auto voice = fastVoice(loop);
    voice->speak(parseSpeech("One two three four five six seven eight nine ten eleven twelve."),
                 first.events());
    ASSERT_TRUE(loop.runUntil([&] { return !first.words.empty(); }));
    voice->stop();
    const auto said = first.words.size();
    voice->speak(parseSpeech("Next."), second.events());
    ASSERT_TRUE(loop.runUntil([&] { return second.ended; }));
    EXPECT_EQ(first.words.size(), said);
    EXPECT_FALSE(first.ended);
}

TEST(Voice, AnEmptyLineEndsAtOnce) {
    PostedSteps loop;
    Heard heard;
    const auto voice = fastVoice(loop);
    voice->speak({}, heard.events());
    EXPECT_TRUE(loop.runUntil([&] { return heard.ended; }));
}

TEST(Voice, ANewVoiceGoesOnWithTheFileOfTheOneBefore) {
    const auto path = std::filesystem::path(testing::TempDir()) / "voice_test.wav";
    const auto recordings = std::make_shared<Recordings>();
    const auto sizeAfter = [&](const std::string& name) {
        PostedSteps loop;
        Heard heard;
        const auto voice = makeVoice({.name = name,
                                      .rate = 450,
                                      .pitch = {},
                                      .device = "file:" + path.string(),
                                      .recordings = recordings},
                                     {}, loop.post());
        voice->speak(parseSpeech("One."), heard.events());
        EXPECT_TRUE(loop.runUntil([&] { return heard.ended; }));
        return std::filesystem::file_size(path);
    };
    const auto first = sizeAfter("en-us");
    EXPECT_GT(first, 44U + 2 * 22050 / 10);
    EXPECT_GT(sizeAfter("flite:slt"), first + 2 * 22050 / 10);
    std::filesystem::remove(path);
}

TEST(Voice, AWaveFileThatCannotBeWrittenLeavesTheLineSilent) {
    PostedSteps loop;
    Heard heard;
    const auto voice = fastVoice(loop, "file:/nowhere/at/all.wav");
    voice->speak(parseSpeech("One."), heard.events());
    EXPECT_TRUE(loop.runUntil([&] { return heard.ended; }));
}

TEST(Voice, AMegabyteIsBegunAtOnceAndStopsAtOnce) {
    PostedSteps loop;
    Heard heard;
    Heard next;
    const auto voice = fastVoice(loop);
    std::string text;
    while (text.size() < 1'000'000) text += "On and on it goes. ";
    voice->speak(parseSpeech(text), heard.events());
    ASSERT_TRUE(loop.runUntil([&] { return heard.words.size() > 1; }));
    voice->speak(parseSpeech("Hm."), next.events());
    EXPECT_TRUE(loop.runUntil([&] { return next.ended; }));
    EXPECT_FALSE(heard.ended);
}

TEST(Voice, PassesBookmarksAndPausesInTheirPlaces) {
    PostedSteps loop;
    std::string told;
    const auto voice = fastVoice(loop);
    bool ended = false;
    const auto start = std::chrono::steady_clock::now();
    voice->speak(parseSpeech(R"(\Mrk=7\\Pau=300\Yes \Vol=0\no\Mrk=9\)"),
                 {.onWord = [&](std::size_t word) { told += "w" + std::to_string(word) + " "; },
                  .onBookmark = [&](std::uint32_t mark) { told += "m" + std::to_string(mark) + " "; },
                  .onEnd = [&] { ended = true; }});
    ASSERT_TRUE(loop.runUntil([&] { return ended; }));
    EXPECT_EQ(told, "m7 w0 w1 w2 m9 w3 ");
    EXPECT_GT(std::chrono::steady_clock::now() - start, 300ms);
}

TEST(Voice, ALineOnADeviceThatHangsEndsInTimeAndASoundlessOneFollows) {
    PostedSteps loop;
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    Heard first;
    {
        const auto voice = makeVoice(
            VoiceParameters{.name = "en-us", .fallback = "en-us", .rate = 450},
            [&](int rate) {
                return std::make_unique<DeviceThread>(
                    [released](int) { return std::make_unique<HangingDevice>(released); }, rate);
            },
            loop.post());
        voice->speak(parseSpeech("It hangs."), first.events());
        EXPECT_TRUE(loop.runUntil([&] { return first.ended; }));
        EXPECT_THAT(first.words, ElementsAre(0, 1));
    }
    release.set_value();
}

}  // namespace
