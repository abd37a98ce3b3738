#include "agent/voice/synthesizer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "agent/voice/ssml.h"

namespace {

using namespace agent;
using testing::ElementsAre;

const auto never = [] { return false; };

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

TEST(Flite, AWordThatIsReadAsManyIsMarkedOnce) {
    const auto engine = openFlite("slt");
    const std::vector<SpokenWord> words{{std::string(40, '7'), 0}};
    std::size_t samples = 0;
    std::vector<std::size_t> marks;
    engine->speak({.words = words}, {},
                  {.receive =
                       [&](const Utterance& piece) {
                           samples += piece.samples.size();
                           for (const auto& event : piece.events)
                               if (std::holds_alternative<std::size_t>(event.what)) marks.push_back(samples);
                       },
                   .stopped = never});
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_LT(marks.front(), 16000U / 2);
    EXPECT_GT(samples, 16000U * 40 / 5);
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
