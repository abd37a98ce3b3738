#include "base/text.h"

#include <gmock/gmock.h>

#include <string>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Lines, EndAtEveryKindOfLineEnd) {
    EXPECT_THAT(splitLines("a\nb\r\nc\rd\r\r\ne"), ElementsAre("a", "b", "c", "d", "", "e"));
    EXPECT_THAT(splitLines("\n\ra\r"), ElementsAre("", "", "a"));
    EXPECT_THAT(splitLines(""), IsEmpty());
}

TEST(Lines, TellWhereTheNextOneBegins) {
    const std::string_view text = "xx\r\ny";
    LineWalk walk(text, 1);
    const auto first = walk.next();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->begin, 1U);
    EXPECT_EQ(first->end, 2U);
    EXPECT_EQ(first->next, 4U);
    const auto last = walk.next();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->end, last->next);
    EXPECT_FALSE(walk.next());
}

TEST(Text, ComparesLettersOfEitherCaseAndNoOtherBytes) {
    EXPECT_TRUE(equalsIgnoringCase("Velmora [1]", "vELMORA [1]"));
    EXPECT_FALSE(equalsIgnoringCase("[", "{"));
    EXPECT_FALSE(equalsIgnoringCase("\xC4", "\xE4"));
    EXPECT_FALSE(equalsIgnoringCase("ab", "abc"));
    EXPECT_TRUE(endsWithIgnoringCase("wave.VLS", ".vls"));
    EXPECT_FALSE(endsWithIgnoringCase("vls", ".vls"));
    EXPECT_EQ(trim(" \t a b\t"), "a b");
    EXPECT_EQ(trim(" \t "), "");
}

}  // namespace
}  // namespace velmora
