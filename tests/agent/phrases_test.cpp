#include "agent/voice/phrases.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace agent;

TEST(Phrases, AreSentencesAndEndWhereTheDeliveryChanges) {
    struct Case {
        std::string text;
        std::size_t letters;
        std::size_t length;
    };
    const std::vector<Case> cases = {
        {"Hi. I am here. Good day", 100, 4},
        {"One", 100, 1},
        {R"(So \Spd=200\fast it \Rst\goes)", 100, 1},
        {R"(\Spd=200\So fast it \Rst\goes)", 100, 3},
        {R"(Wait \Pau=500\for me)", 100, 1},
        {R"(\Pau=500\Wait for me)", 100, 3},
        {"It announces what is new in your mailbox", 26, 5},
        {"It announces the news in your own mailbox", 26, 4},
        {"Well, now, this is a long one", 17, 2},
        {"a b c d e f", 1, 1},
        {"Call 5551212 now please", 26, 1},
        {R"("Don't," he said to me)", 20, 3},
    };
    for (const auto& c : cases)
        EXPECT_EQ(phraseLength(parseSpeech(c.text).words, c.letters), c.length) << c.text;
    EXPECT_EQ(phraseLength(std::vector<SpokenWord>(1000), 10'000), 50U);
}

TEST(Phrases, AWordIsReadAsItsContextAsks) {
    using enum Delivery::Context;
    EXPECT_EQ(readAloud("ann.b_c@mail-er.example.", eMail),
              "ann dot b underscore c at mail dash er dot example.");
    EXPECT_EQ(readAloud("...", eMail), "...");
    EXPECT_EQ(readAloud("St.", address), "Street");
    EXPECT_EQ(readAloud("ave,", address), "Avenue,");
    EXPECT_EQ(readAloud("1600", address), "1600");
    EXPECT_EQ(readAloud("555-1212", address), "5 5 5 , 1 2 1 2 ");
    EXPECT_EQ(readAloud("St.", unknown), "St.");
}

}  // namespace
