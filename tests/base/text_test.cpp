#include "base/text.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Lines, EndAtEveryKindOfLineEnd) {
    EXPECT_THAT(splitLines("a\nb\r\nc\rd\r\r\ne"), ElementsAre("a", "b", "c", "d", "", "e"));
    EXPECT_THAT(splitLines("\n\ra\r"), ElementsAre("", "", "a"));
    EXPECT_THAT(splitLines(""), IsEmpty());
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
