#include "platform/console/lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Lines, FieldsSurviveWhateverTheyHold) {
    const std::string text("a\\b\tc\rd\ne\0f\\n", 13);
    const std::string field = escapeField(text);
    EXPECT_EQ(field, "a\\\\b\\tc\\rd\\ne\\0f\\\\n");
    EXPECT_EQ(unescapeField(field), text);
    EXPECT_EQ(unescapeField("C:\\x\\"), "C:\\x\\");  // no escape of ours
}

TEST(Lines, BlanksSeparateFieldsAndTheLastTakesTheRest) {
    EXPECT_THAT(splitFields("set  txtUserName   two words ", 3),
                ElementsAre("set", "txtUserName", "two words "));
    EXPECT_THAT(splitFields("forms", 1), ElementsAre("forms"));
    EXPECT_THAT(splitFields("   ", 2), IsEmpty());
}

TEST(Lines, TabsAloneSeparateWhereThereIsOne) {
    EXPECT_THAT(splitFields("command\tMy Office\t-61", 3), ElementsAre("command", "My Office", "-61"));
    EXPECT_THAT(splitFields("set\ttxtUserName\t", 3), ElementsAre("set", "txtUserName", ""));
    EXPECT_THAT(splitFields("a\tb\\tc\td", 2), ElementsAre("a", "b\tc", "d"));  // too many show as too many
}

TEST(Lines, PrintedFieldsAreEscapedAndAMutedPrinterIsSilent) {
    std::ostringstream out;
    LinePrinter printer(out);
    printer.print({"box", "", "two\nlines"});
    printer.print({"speak", "Andr\xe9", "Andr\xc3\xa9"});
    printer.mute();
    printer.print({"never"});
    EXPECT_EQ(out.str(), "box\t\ttwo\\nlines\nspeak\tAndr\xc3\xa9\tAndr\xc3\xa9\n");
}

}  // namespace
}  // namespace velmora
