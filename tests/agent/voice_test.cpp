#include "agent/voice/voice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <vector>

#include "agent/voice/ssml.h"
#include "agent/voice/synthesizer.h"

namespace {

using namespace agent;
using namespace std::chrono_literals;
using testing::ElementsAre;

const auto never = [] { return false; };

// The caller's event loop.
class Loop {
public:
    Post post() {
        return [this](std::function<void()> step) {
            const std::lock_guard lock(mutex_);
            steps_.push_back(std::move(step));
            arrived_.notify_all();
        };
    }

    // False: nothing came for long.
    bool runUntil(const std::function<bool()>& condition) {
        while (!condition()) {
            std::unique_lock lock(mutex_);
            if (!arrived_.wait_for(lock, 20s, [this] { return !steps_.empty(); })) return false;
            const auto step = std::move(steps_.front());
            steps_.pop_front();
            lock.unlock();
            step();
        }
        return true;
    }

private:
    std::mutex mutex_;
    std::condition_variable arrived_;
    std::deque<std::function<void()>> steps_;
};

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

TEST(Ssml, MarksEveryWordAndHoldsNoMarkupOfTheLine) {
    const auto line = parseSpeech("a<b & \x93q\x94 \x01");
    EXPECT_EQ(
        toSsml(line.words, 7),
        "<speak><mark name=\"7\"/>a&lt;b <mark name=\"8\"/>&amp; <mark name=\"9\"/>\xe2\x80\x9cq\xe2\x80\x9d "
        "</speak>");
}

TEST(Ssml, ALongLineIsSaidSentenceBySentence) {
    EXPECT_EQ(sentenceLength(parseSpeech("Hi. I am here. Good day").words), 4U);
    EXPECT_EQ(sentenceLength(std::vector<SpokenWord>(1000)), 50U);
    EXPECT_EQ(sentenceLength(std::vector<SpokenWord>(1)), 1U);
}

TEST(Synthesizer, SpeaksAudiblyWithAMarkForEachWordWhateverItHolds) {
    const auto line =
        parseSpeech("Hello <dear> \\Map=\"friend of mine\"=\"f\"\\ ... & \xff\xfe \\Map=\"\"=\"x\"\\ bye");
    const auto speech =
        Synthesizer().synthesize(line.words, 3, {.name = "nobody", .fallback = "en-us"}, never);
    std::vector<std::size_t> marks;
    for (const auto& event : speech.events) {
        if (const auto* word = std::get_if<std::size_t>(&event.what)) marks.push_back(*word);
    }
    EXPECT_THAT(marks, ElementsAre(3, 4, 5, 6, 7, 8, 9, 10));
    const auto loudest = std::ranges::max(speech.samples, {}, [](int s) { return std::abs(s); });
    EXPECT_GT(std::abs(loudest), 3000);
    EXPECT_GT(speech.samples.size(), 22050U);
}

TEST(Synthesizer, GivesUpWhenStopped) {
    const std::vector<SpokenWord> words(50, {"wonderful", 0});
    int asked = 0;
    const auto speech =
        Synthesizer().synthesize(words, 0, {.name = "en-us", .fallback = "en"}, [&] { return ++asked > 1; });
    EXPECT_LT(speech.samples.size(), 22050U * 3);
}

TEST(Voice, TellsEveryWordAndTheEndWithoutASoundDevice) {
    Loop loop;
    Heard heard;
    const auto voice = makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = "none"}, {}, loop.post());
    voice->speak(parseSpeech("Good day to you."), heard.events());
    ASSERT_TRUE(loop.runUntil([&] { return heard.ended; }));
    EXPECT_THAT(heard.words, ElementsAre(0, 1, 2, 3));
    EXPECT_TRUE(heard.mouthMoved);
}

TEST(Voice, AStoppedLineTellsNothingMoreAndTheNextIsSaid) {
    Loop loop;
    Heard first;
    Heard second;
    const auto voice = makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = "none"}, {}, loop.post());
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
    Loop loop;
    Heard heard;
    const auto voice = makeVoice({.name = {}, .rate = {}, .pitch = {}, .device = "none"}, {}, loop.post());
    voice->speak({}, heard.events());
    EXPECT_TRUE(loop.runUntil([&] { return heard.ended; }));
}

TEST(Voice, WritesAllThatIsSaidIntoOneWaveFile) {
    const auto path = std::filesystem::path(testing::TempDir()) / "voice_test.wav";
    Loop loop;
    Heard first;
    Heard second;
    const auto voice =
        makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = "file:" + path.string()}, {}, loop.post());
    voice->speak(parseSpeech("One."), first.events());
    ASSERT_TRUE(loop.runUntil([&] { return first.ended; }));
    const auto sizeOfFirst = std::filesystem::file_size(path);
    voice->speak(parseSpeech("Two."), second.events());
    ASSERT_TRUE(loop.runUntil([&] { return second.ended; }));

    std::ifstream file(path, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), {});
    EXPECT_GT(bytes.size(), sizeOfFirst);
    const auto number = [&](std::size_t at) {
        std::uint32_t value = 0;
        for (std::size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
        return value;
    };
    EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 4) + bytes.substr(36, 4), "RIFFWAVEdata");
    EXPECT_EQ(number(4), bytes.size() - 8);
    EXPECT_EQ(number(40), bytes.size() - 44);
    EXPECT_GT(sizeOfFirst, 44U + 2 * 22050 / 10);
    std::filesystem::remove(path);
}

TEST(Voice, AWaveFileThatCannotBeWrittenLeavesTheLineSilent) {
    Loop loop;
    Heard heard;
    const auto voice = makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = "file:/nowhere/at/all.wav"},
                                 {}, loop.post());
    voice->speak(parseSpeech("One."), heard.events());
    EXPECT_TRUE(loop.runUntil([&] { return heard.ended; }));
}

TEST(EstimatePace, ComesNearTheWordsAMinute) {
    const auto silence = estimatePace(std::vector<SpokenWord>(150, {"hello", 0}), 0, 150, 22050);
    EXPECT_NEAR(static_cast<double>(silence.samples.size()) / 22050, 60, 6);
}

}  // namespace
