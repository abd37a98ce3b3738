#include "mail/retrieved_text.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

TEST(RetrievedText, FindsItsEndHoweverItIsCutUp) {
    const std::string whole = "+OK 9 octets\r\nbody\n.\n..\r\n.\r\n";
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        RetrievedText text;
        EXPECT_FALSE(text.add(whole.substr(0, cut))) << cut;
        EXPECT_TRUE(text.add(whole.substr(cut))) << cut;
        EXPECT_EQ(text.take(), "body\n.\n..\r\n");
        EXPECT_EQ(text.size(), 0U);
    }
    RetrievedText byBytes;
    for (std::size_t i = 0; i < whole.size(); ++i)
        EXPECT_EQ(byBytes.add(whole.substr(i, 1)), i + 1 == whole.size());
}

TEST(RetrievedText, LosesItsFirstLineAndThreeCharactersWhateverTheyAre) {
    const struct {
        std::string_view arrived;
        std::string_view taken;
    } cases[] = {
        {"x\n.\r\n", ""},
        {"+OK\r\na\r\n.\r\n+OK\r\n", "a\r\n.\r\n+O"},
        {"-ERR\r\n+OK\r\na\r\n.\r\n", "+OK\r\na\r\n"},
    };
    for (const auto& [arrived, taken] : cases) {
        RetrievedText text;
        EXPECT_TRUE(text.add(arrived));
        EXPECT_EQ(text.take(), taken);
    }
}

}  // namespace
}  // namespace velmora
