#include "agent/voice/voice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <mutex>
#include <thread>
#include <vector>

#include "agent/voice/device_thread.h"
#include "agent/voice/speech_worker.h"
#include "agent/voice/ssml.h"
#include "agent/voice/synthesis_ahead.h"
#include "agent/voice/synthesizer.h"
#include "tests/support/posted_steps.h"

namespace {

using namespace agent;
using namespace std::chrono_literals;
using testing::ElementsAre;
using velmora::PostedSteps;

const auto never = [] { return false; };

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

TEST(Ssml, EmphasisesStressedWordsOnly) {
    const auto line = parseSpeech("\\Emp\\so I");
    EXPECT_EQ(
        toSsml(line.words, 0),
        "<speak><mark name=\"0\"/><emphasis level=\"strong\">so</emphasis> <mark name=\"1\"/>I </speak>");
}

TEST(VoiceParameters, AreChangedByTheTagsBeforeAWordAndByNothingElse) {
    const VoiceParameters own{.name = "v", .fallback = "f", .rate = 150, .pitch = 20, .range = 60};
    const auto with = [&own](const char* tags) {
        const auto p = withDelivery(own, parseSpeech(std::string(tags) + "x").words.at(0).delivery);
        return std::to_string(p.rate) + " " + std::to_string(p.pitch) + " " +
               std::to_string(p.hertz.value_or(0)) + " " + std::to_string(p.range) +
               (p.whisper ? " whisper" : "");
    };
    EXPECT_EQ(with(""), "150 20 0 60");
    EXPECT_EQ(with("\\Spd=300\\"), "300 20 0 60");
    EXPECT_EQ(with("\\Pit=90\\"), "150 20 90 60");
    EXPECT_EQ(with("\\Chr=\"Monotone\"\\"), "150 20 0 0");
    EXPECT_EQ(with("\\Chr=\"Whisper\"\\\\Spd=80\\"), "80 20 0 60 whisper");
    EXPECT_EQ(with("\\Spd=300\\\\Rst\\"), "150 20 0 60");
}

TEST(Volume, ScalesSamples) {
    Utterance utterance{{32767, -32768, 100}, {}};
    setVolume(utterance, 32767);
    EXPECT_THAT(utterance.samples, ElementsAre(16383, -16383, 49));
}

TEST(Espeak, AsksNothingOfASoundServerThatMayHang) {
    const auto folder = std::filesystem::path(testing::TempDir()) / ("server" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    const std::string path = folder / "native";
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(server, 8), 0);
    setenv("PULSE_SERVER", ("unix:" + path).c_str(), 1);
    EXPECT_GT(openEspeak()->sampleRate(), 0);
    unsetenv("PULSE_SERVER");
    pollfd caller{.fd = server, .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&caller, 1, 0), 0) << "somebody has called it";
    close(server);
    std::filesystem::remove_all(folder);
}

class SynthesizerTest : public testing::TestWithParam<std::string> {
protected:
    Utterance say(const std::vector<SpokenWord>& words, const std::function<bool()>& stopped = never,
                  VoiceParameters parameters = {}, bool endsSentence = true) {
        parameters.name = parameters.fallback = GetParam();
        const auto engine = openSynthesizer(parameters);
        rate = static_cast<std::size_t>(engine->sampleRate());
        Utterance all;
        engine->speak({.words = words, .first = 3, .endsSentence = endsSentence}, parameters,
                      {.receive =
                           [&](const Utterance& piece) {
                               for (auto event : piece.events) {
                                   event.sample += all.samples.size();
                                   all.events.push_back(event);
                               }
                               all.samples.insert(all.samples.end(), piece.samples.begin(),
                                                  piece.samples.end());
                           },
                       .stopped = stopped});
        return all;
    }
    std::size_t rate = 0;
};

TEST_P(SynthesizerTest, SpeaksAudiblyWithAMarkForEachWordWhateverItHolds) {
    const auto line =
        parseSpeech("Hello <dear> \\Map=\"friend of mine\"=\"f\"\\ ... & \xff\xfe \\Map=\"\"=\"x\"\\ bye");
    const auto speech = say(line.words);
    std::vector<std::size_t> marks;
    std::vector<Mouth> mouths;
    std::size_t last = 0;
    for (const auto& event : speech.events) {
        EXPECT_GE(event.sample, last);
        last = event.sample;
        if (const auto* word = std::get_if<std::size_t>(&event.what)) marks.push_back(*word);
        if (const auto* mouth = std::get_if<Mouth>(&event.what)) mouths.push_back(*mouth);
    }
    EXPECT_THAT(marks, ElementsAre(3, 4, 5, 6, 7, 8, 9, 10));
    EXPECT_GT(mouths.size(), 10U);
    EXPECT_EQ(mouths.back(), Mouth::closed);
    EXPECT_LE(last, speech.samples.size());
    const auto loudest = std::ranges::max(speech.samples, {}, [](int s) { return std::abs(s); });
    EXPECT_GT(std::abs(loudest), 3000);
    EXPECT_GT(speech.samples.size(), rate);
}

TEST_P(SynthesizerTest, GivesUpWhenStopped) {
    const std::vector<SpokenWord> words(20, {"wonderful", 0});
    int asked = 0;
    const auto length = say(words, [&] { return ++asked > 1; }).samples.size();
    EXPECT_LT(length, rate * 3);
}

TEST_P(SynthesizerTest, TakesItsTimeAsTheParametersSayAndRestsOnlyBehindASentence) {
    const auto words = parseSpeech("This is the first part of it").words;
    const auto normal = say(words).samples.size();
    EXPECT_LT(say(words, never, {.rate = 320}).samples.size(), normal * 3 / 4);
    EXPECT_LT(say(words, never, {}, false).samples.size(), normal - rate / 10);
    EXPECT_GT(say(words, never, {.pitch = 90, .range = 0, .whisper = true}).samples.size(), normal / 2);
}

INSTANTIATE_TEST_SUITE_P(Engines, SynthesizerTest, testing::Values("en-us", "nobody", "flite:slt"),
                         [](const auto& engine) { return "Voice" + std::to_string(engine.index); });

TEST(Flite, AVoiceThatIsNotThereIsTheFallback) {
    EXPECT_EQ(openFlite("../../evil"), nullptr);
    EXPECT_EQ(openSynthesizer({.name = "flite:nobody", .fallback = "flite:slt"})->sampleRate(), 16000);
    EXPECT_EQ(openSynthesizer({.name = "flite:nobody", .fallback = "en-gb"})->sampleRate(), 22050);
    EXPECT_THAT(installedFliteVoices(), testing::Contains("flite:slt"));
}

TEST(Voice, TellsEveryWordAndTheEndWithoutASoundDevice) {
    PostedSteps loop;
    Heard heard;
    const auto voice = makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = "none"}, {}, loop.post());
    voice->speak(parseSpeech("Good day to you."), heard.events());
    ASSERT_TRUE(loop.runUntil([&] { return heard.ended; }));
    EXPECT_THAT(heard.words, ElementsAre(0, 1, 2, 3));
    EXPECT_TRUE(heard.mouthMoved);
}

TEST(Voice, AStoppedLineTellsNothingMoreAndTheNextIsSaid) {
    PostedSteps loop;
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
    PostedSteps loop;
    Heard heard;
    const auto voice = makeVoice({.name = {}, .rate = {}, .pitch = {}, .device = "none"}, {}, loop.post());
    voice->speak({}, heard.events());
    EXPECT_TRUE(loop.runUntil([&] { return heard.ended; }));
}

TEST(Voice, WritesAllThatIsSaidIntoOneWaveFile) {
    const auto path = std::filesystem::path(testing::TempDir()) / "voice_test.wav";
    PostedSteps loop;
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

TEST(WavSink, ForgetsWhatWasNotHeardAndGoesOnBehindTheRest) {
    const auto path = std::filesystem::path(testing::TempDir()) / "voice_test_drop.wav";
    openWav(path.string(), false, 8000)->write(std::vector<std::int16_t>(10, 1));
    const auto sink = openWav(path.string(), true, 8000);
    sink->write(std::vector<std::int16_t>(100, 2));
    sink->drop(60);
    EXPECT_EQ(std::filesystem::file_size(path), 44U + 2 * 50);
    sink->drop(1000);
    sink->write(std::vector<std::int16_t>(5, 3));
    EXPECT_EQ(std::filesystem::file_size(path), 44U + 2 * 5);
    std::filesystem::remove(path);
}

TEST(Voice, AWaveFileThatCannotBeWrittenLeavesTheLineSilent) {
    PostedSteps loop;
    Heard heard;
    const auto voice = makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = "file:/nowhere/at/all.wav"},
                                 {}, loop.post());
    voice->speak(parseSpeech("One."), heard.events());
    EXPECT_TRUE(loop.runUntil([&] { return heard.ended; }));
}

// A megabyte of words.
SpokenLine hugeLine() {
    std::string text;
    while (text.size() < 1'000'000) text += "On and on it goes. ";
    return parseSpeech(text);
}

TEST(Voice, AMegabyteIsBegunAtOnceAndStopsAtOnce) {
    PostedSteps loop;
    Heard heard;
    Heard next;
    const auto voice = makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = "none"}, {}, loop.post());
    voice->speak(hugeLine(), heard.events());
    ASSERT_TRUE(loop.runUntil([&] { return heard.words.size() > 1; }));
    voice->speak(parseSpeech("Hm."), next.events());
    EXPECT_TRUE(loop.runUntil([&] { return next.ended; }));
    EXPECT_FALSE(heard.ended);
}

// Each phrase is a second long; nothing is said.
class CountingSynthesizer : public Synthesizer {
public:
    int sampleRate() const override { return 1000; }
    PhraseLimits limits() const override { return {.first = 3, .later = 8}; }
    void speak(const Phrase& phrase, const VoiceParameters&, const SpeechReceiver& receiver) override {
        lengths.push_back(phrase.words.size());
        receiver.receive({std::vector<std::int16_t>(1000), {}});
    }
    std::vector<std::size_t> lengths;
};

TEST(SynthesisAhead, KeepsAFewSecondsOfALineHoweverLongItIs) {
    CountingSynthesizer engine;
    const auto line = hugeLine();
    {
        std::mutex mutex;
        std::condition_variable changed;
        int pieces = 0;
        SynthesisAhead ahead(engine, line, {}, [&] {
            const std::lock_guard lock(mutex);
            ++pieces;
            changed.notify_all();
        });
        std::unique_lock lock(mutex);
        ASSERT_TRUE(changed.wait_for(lock, 20s, [&] { return pieces == 4; }));
        lock.unlock();
        EXPECT_TRUE(ahead.take());
        EXPECT_FALSE(ahead.finished());
    }
    EXPECT_LE(engine.lengths.size(), 6U);
    EXPECT_EQ(engine.lengths.front(), 2U);
    EXPECT_EQ(engine.lengths.at(1), 8U);
}

TEST(Voice, PassesBookmarksAndPausesInTheirPlaces) {
    PostedSteps loop;
    std::string told;
    const auto voice = makeVoice({.name = {}, .rate = 450, .pitch = {}, .device = "none"}, {}, loop.post());
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

// A device that hangs in whatever it is asked, until it is released.
class HangingSink : public AudioSink {
public:
    explicit HangingSink(std::shared_future<void> released) : released_(std::move(released)) {}
    bool write(std::span<const std::int16_t>) override { return hang(); }
    std::optional<std::chrono::microseconds> delay() override { return hang() ? 0ms : 1ms; }
    void drop(std::size_t) override { hang(); }

private:
    bool hang() {
        released_.wait();
        return true;
    }
    std::shared_future<void> released_;
};

TEST(DeviceThread, NothingWaitsForADeviceThatHangsAndItIsClosedOnceItComesRound) {
    std::promise<void> release;
    std::promise<void> closed;
    const std::shared_future<void> released = release.get_future().share();
    std::weak_ptr<const void> life;
    {
        DeviceThread device(
            [&](int) { return std::unique_ptr<AudioSink>(std::make_unique<HangingSink>(released)); }, 1000);
        life = device.life();
        EXPECT_TRUE(device.write(std::vector<std::int16_t>(500)));
        EXPECT_EQ(device.delay(), 500ms);
        device.drop(500);
    }
    EXPECT_FALSE(life.expired());
    release.set_value();
    const auto giveUp = std::chrono::steady_clock::now() + 20s;
    while (!life.expired() && std::chrono::steady_clock::now() < giveUp) std::this_thread::yield();
    EXPECT_TRUE(life.expired());
}

TEST(DeviceThread, LeavesTheTimeToTheClockWhereThereIsNoDevice) {
    DeviceThread device([](int) { return nullptr; }, 1000);
    device.write(std::vector<std::int16_t>(500));
    const auto giveUp = std::chrono::steady_clock::now() + 20s;
    while (device.delay() && std::chrono::steady_clock::now() < giveUp) std::this_thread::yield();
    EXPECT_EQ(device.delay(), std::nullopt);
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
                    [released](int) { return std::make_unique<HangingSink>(released); }, rate);
            },
            loop.post());
        voice->speak(parseSpeech("It hangs."), first.events());
        EXPECT_TRUE(loop.runUntil([&] { return first.ended; }));
        EXPECT_THAT(first.words, ElementsAre(0, 1));
    }
    release.set_value();
}

TEST(Phonetic, SpellsEveryClauseAndOnlyTheBeginningOfALongText) {
    EXPECT_THAT(phonetic("go, see"), testing::AllOf(testing::HasSubstr("ɡ"), testing::HasSubstr("iː")));
    EXPECT_LT(phonetic(std::string(1'000'000, 'a')).size(), 1000U);
}

TEST(EstimatePace, ComesNearTheWordsAMinute) {
    const auto silence = estimatePace(std::vector<SpokenWord>(150, {"hello", 0}), 0, 150, 22050);
    EXPECT_NEAR(static_cast<double>(silence.samples.size()) / 22050, 60, 6);
}

}  // namespace
