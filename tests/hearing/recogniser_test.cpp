#include "agent/hearing/recogniser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "agent/hearing/phrase_finder.h"
#include "agent/hearing/sound_out.h"
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

std::unique_ptr<Recogniser> recogniser() {
    return Recogniser::load({}, grammars, soundOutByVoice());
}

TEST(Recogniser, TellsCommandsAndWhatElseWasMeantPerhaps) {
    const auto ears = recogniser();
    ASSERT_NE(ears, nullptr);
    const struct {
        const char* words;
        std::size_t command;
    } cases[] = {{"check mail", 2}, {"open messenger", 4}, {"frobnitz", 5}};
    for (const auto& c : cases) {
        const auto heard = ears->recognise(findPhrases(spoken(c.words)).at(0));
        ASSERT_TRUE(heard) << c.words;
        EXPECT_EQ(heard->command, c.command) << c.words;
        EXPECT_GT(heard->score, -60) << c.words;
        EXPECT_EQ(heard->words, c.words);
        EXPECT_THAT(heard->runnersUp, testing::SizeIs(2));
        EXPECT_THAT(heard->runnersUp, testing::Not(testing::Contains(c.command)));
    }
}

TEST(Recogniser, APhraseThatIsNoCommandScoresAtTheFloorOrBelow) {
    const auto ears = recogniser();
    ASSERT_NE(ears, nullptr);
    for (const char* words : {"the weather is fine today", "change the light bulb"}) {
        const auto heard = ears->recognise(findPhrases(spoken(words)).at(0));
        ASSERT_TRUE(heard) << words;
        EXPECT_LE(heard->score, -60) << words << ": " << heard->words;
    }
    EXPECT_FALSE(ears->recognise(Samples(hearingRate, 0)) || ears->recognise({}));
}

TEST(Recogniser, IsNotThereWithoutAModelOrAnythingToHear) {
    EXPECT_EQ(Recogniser::load({.acoustic = "/nonexistent"}, grammars, {}), nullptr);
    EXPECT_EQ(Recogniser::load({.dictionary = "/nonexistent"}, grammars, {}), nullptr);
    EXPECT_EQ(Recogniser::load({.language = "/nonexistent"}, grammars, {}), nullptr);
    EXPECT_EQ(Recogniser::load({}, {"", "[...]"}, {}), nullptr);
}

TEST(Score, RisesWithTheLikelihoodAndDividesAtTheFloor) {
    EXPECT_EQ(scoreOf(0), -100);
    EXPECT_EQ(scoreOf(1), 100);
    EXPECT_LE(scoreOf(0.5), -60);
    EXPECT_GT(scoreOf(0.51), -60);
    for (double likelihood = 0; likelihood < 1; likelihood += 0.01)
        EXPECT_LE(scoreOf(likelihood), scoreOf(likelihood + 0.01));
}

}  // namespace
