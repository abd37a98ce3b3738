#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/console/terminal_session.h"
#include "tests/hearing/spoken.h"

namespace {

using namespace velmora;
using namespace velmora::test;
using testing::Contains;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class HearLine : public testing::Test {
protected:
    HearLine() {
        folder_.write("Velmora.ini", "[Options]\nDefault=True\n[User]\nName=Anna\n");
        folder_.write("Calender.ini", "");
    }

    ScratchFolder folder_;
};

TEST_F(HearLine, ARecordedCommandIsCarriedOut) {
    TerminalSession session(folder_.path(), {"--no-open"});
    session.readAnswer();
    const std::string file = temporaryFile("general.wav", wavBytes(spoken("open messenger")));
    const auto lines = session.send("hear " + file);
    EXPECT_THAT(lines, Contains(StartsWith("heard open messenger Messenger ")));
    EXPECT_EQ(lines.back(), "ok");
}

TEST_F(HearLine, EveryPhraseOfARecordingIsHeardAndNoneThatFitsIsNamed) {
    TerminalSession session(folder_.path(), {"--no-open"});
    session.readAnswer();
    agent::Samples both = spoken("show about");
    const agent::Samples second = spoken("the train to the city was late again");
    both.insert(both.end(), second.begin(), second.end());
    const auto lines = session.send("hear " + temporaryFile("two.wav", wavBytes(both)));
    EXPECT_THAT(lines, Contains(StartsWith("heard show about About ")));
    EXPECT_THAT(lines, Contains(ContainsRegex("^heard .*  -[6-9][0-9]$|^heard .*  -100$")));
    EXPECT_THAT(lines, Contains("listen off"));
    EXPECT_EQ(lines.back(), "ok");
}

TEST_F(HearLine, SilenceIsHeardAsNothingAndWhatIsNoRecordingIsRefused) {
    TerminalSession session(folder_.path(), {"--no-open"});
    session.readAnswer();
    const agent::Samples silence(agent::hearingRate);
    EXPECT_THAT(session.send("hear " + temporaryFile("silence.wav", wavBytes(silence))), ElementsAre("ok"));
    EXPECT_THAT(session.send("hear " + temporaryFile("empty.wav", "")),
                ElementsAre(HasSubstr("error not a WAV file")));
    EXPECT_THAT(session.send("hear /nonexistent.wav"), ElementsAre(HasSubstr("error no such file")));
    EXPECT_THAT(session.send("hear"), ElementsAre(HasSubstr("error")));
    EXPECT_THAT(session.send("get FrmMain.Visible"), Contains("ok"));
}

}  // namespace
