#include "agent/hearing/recogniser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/hearing/phrase_finder.h"
#include "agent/hearing/shown_words.h"
#include "agent/hearing/sound_out.h"
#include "agent/hearing/writing_model.h"
#include "tests/hearing/spoken.h"

namespace {

using namespace agent;
using velmora::test::spoken;

const std::vector<std::string> grammars{"[...]general[...]",
                                        "[change|new|choose new|different]agent[character]",
                                        "[check][e]mail",
                                        "[new][e]mail",
                                        "[open|show|start]messenger",
                                        "Frobnitz"};

std::unique_ptr<Recogniser> recogniser(const HearingModel& model = {}) {
    return Recogniser::load(model, grammars, soundOutByVoice());
}

/// With the model that writes down what was said, and without.
const std::string ways[]{defaultWritingFolder(), "/nonexistent"};

TEST(Recogniser, TellsCommandsAndWhatElseWasMeantPerhaps) {
    const struct {
        const char* words;
        std::size_t command;
        bool bySoundAlone = true;
    } cases[] = {{"check mail", 2, false}, {"new mail", 3}, {"open messenger", 4}, {"frobnitz", 5}};
    for (const std::string& way : ways) {
        const auto ears = recogniser({.writing = way});
        ASSERT_NE(ears, nullptr);
        const bool writes = WritingModel::load(way) != nullptr;
        for (const auto& c : cases) {
            if (!writes && !c.bySoundAlone) continue;
            const auto heard = ears->recognise(findPhrases(spoken(c.words)).at(0));
            ASSERT_TRUE(heard) << c.words;
            EXPECT_EQ(heard->command, c.command) << c.words;
            EXPECT_GT(heard->score, -60) << c.words << way;
            EXPECT_EQ(heard->words, c.words);
            EXPECT_THAT(heard->runnersUp, testing::SizeIs(2));
            EXPECT_THAT(heard->runnersUp, testing::Not(testing::Contains(c.command)));
        }
    }
}

TEST(Recogniser, APhraseThatIsNoCommandScoresAtTheFloorOrBelow) {
    for (const std::string& way : ways) {
        const auto ears = recogniser({.writing = way});
        ASSERT_NE(ears, nullptr);
        for (const char* words : {"the weather is fine today", "change the light bulb"}) {
            const auto heard = ears->recognise(findPhrases(spoken(words)).at(0));
            EXPECT_LE(heard ? heard->score : -100, -60) << words << way;
        }
        EXPECT_FALSE(ears->recognise(Samples(hearingRate, 0)) || ears->recognise({}));
    }
}

TEST(Recogniser, ShowsWordsWithoutPunctuationAndWithoutRudeOnes) {
    EXPECT_EQ(shownWords("What the FUCK, \"Sir\"?"), "what the sir");
}

TEST(Recogniser, CanBeStopped) {
    std::stop_source stop;
    stop.request_stop();
    EXPECT_FALSE(recogniser()->recognise(findPhrases(spoken("check mail")).at(0), stop.get_token()));
}

TEST(Recogniser, IsNotThereWithoutAModelOrAnythingToHear) {
    EXPECT_EQ(Recogniser::load({.acoustic = "/nonexistent"}, grammars, {}), nullptr);
    EXPECT_EQ(Recogniser::load({.dictionary = "/nonexistent"}, grammars, {}), nullptr);
    EXPECT_EQ(Recogniser::load({}, {"", "[...]"}, {}), nullptr);
}

TEST(Score, RisesWithTheLikelihoodAndDividesAtTheFloor) {
    EXPECT_EQ(scoreOf(0), -100);
    EXPECT_EQ(scoreOf(1), 100);
    EXPECT_LE(scoreOf(0.5), -60);
    EXPECT_GT(scoreOf(0.51), -60);
    for (int percent = 0; percent < 100; ++percent)
        EXPECT_LE(scoreOf(percent / 100.0), scoreOf((percent + 1) / 100.0));
}

}  // namespace
