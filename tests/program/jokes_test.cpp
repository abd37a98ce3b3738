#include <gmock/gmock.h>

#include <set>

#include "tests/program/started_program.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using namespace testing;

class JokesTest : public StartedProgram {
protected:
    JokesTest() { machine.setting("/home", "Options", "Jokes", "On"); }

    std::vector<std::string> linesOf(const std::string& entry) { return program().menu(entry).takeLines(); }

    /// What the character says in that many clicks on the entry.
    std::set<std::string> saidIn(int clicks, const std::string& entry) {
        std::set<std::string> said;
        for (int click = 0; click < clicks; ++click) {
            program().menu(entry);
            for (const std::string& text : program().takeSaid()) said.insert(text);
        }
        return said;
    }

    /// Of 200 minutes that begin with this counter, those that bring a joke.
    int jokesAfter(std::int16_t ticks) {
        int jokes = 0;
        for (int minute = 0; minute < 200; ++minute) {
            program().run([&](Program& inside) { inside.jokes().JokeTicks = ticks; });
            machine.advance(1min);
            jokes += program().takeSaid().empty() ? 0 : 1;
        }
        return jokes;
    }
};

TEST_F(JokesTest, JokesAndTipsAreWholeLinesAndAnyOfThemCanCome) {
    machine.files.put("/home/Jokes.txt", " one \r\ntwo: \\Chr=\"Whisper\"\\hush\r\n\r\nlast");
    machine.files.put("/home/Tips.txt", "a tip\rand another\r");
    EXPECT_EQ(saidIn(200, "mnuJokeTell"), (std::set<std::string>{" one ", "two: hush", "", "last"}));
    EXPECT_EQ(saidIn(100, "mnuInteractTip"), (std::set<std::string>{"a tip", "and another"}));
    EXPECT_THAT(linesOf("mnuInteractTip"), ElementsAre("play Announce", testing::_, "play Pleased"));
    EXPECT_THAT(linesOf("mnuJokeTell"),
                ElementsAre("play GetAttention", testing::_, "play GetAttentionReturn", "play Pleased"));
}

TEST_F(JokesTest, WithoutFilesTheEntriesDoNothingAndTheSongIsDisabled) {
    machine.files.createFolder("/home/Jokes.txt");  // a folder is no file of jokes
    machine.files.put("/home/Tips.txt", "");
    EXPECT_THAT(linesOf("mnuJokeTell"), IsEmpty());
    EXPECT_THAT(linesOf("mnuInteractTip"), IsEmpty());
    EXPECT_EQ(program().value("mnuInteractSong.Enabled"), "False");
    program().command("Sing song");  // a spoken command needs no menu entry
    EXPECT_THAT(program().takeLines(),
                ElementsAre("play Sad",
                            "speak An error occured I was unable to open the songs file. An error "
                            "occured I was unable to open the songs file."));
}

TEST_F(JokesTest, UnreadableJokesAreReportedWhileTheyLoad) {
    machine.files.put("/home/Jokes.txt", "joke");
    machine.files.makeUnreadable("/home/Jokes.txt");
    auto& started = machine.startFor("");
    EXPECT_THAT(started.takeLines(), Contains(testing::StartsWith("box An Error Occured Error # 75 ")));
    started.answer(BoxAnswer::no);
}

TEST_F(JokesTest, LinesOfASongActByTheirFirstWordAlone) {
    machine.files.put("/home/Songs/only.TXT",
                      "Speak  one|uno\r\nspeak two\nPlay Wave \rSpeak\r\n Show\r\nShow \r\nShow\r\nSpeak ");
    program().menu("mnuHide").takeLines();
    EXPECT_THAT(linesOf("mnuInteractSong"),
                ElementsAre(testing::StartsWith("speak \\\\Chr=\"Monotone\"\\\\ one|uno "), "play Wave ",
                            "show", "speak \\\\Chr=\"Monotone\"\\\\ "));
}

TEST_F(JokesTest, LastOfSeveralSongsIsNeverSung) {
    for (const char* name : {"c.txt", "b.txt", "a.txt", "d.text"})
        machine.files.put(std::string("/home/Songs/") + name, std::string("Speak ") + name);
    EXPECT_THAT(saidIn(100, "mnuInteractSong"), UnorderedElementsAre("a.txt", "b.txt"));
}

TEST_F(JokesTest, SongTooLongToHoldIsNotBegun) {
    std::string song;
    for (int line = 0; line < 1'000'001; ++line) song.append("Play A\n");
    machine.files.put("/home/Songs/a.txt", std::move(song));
    EXPECT_EQ(linesOf("mnuInteractSong").front(), "play Sad");
    machine.files.put("/home/Songs/a.txt", std::string(3'000'000, '\r') + "Play Wave");
    EXPECT_THAT(linesOf("mnuInteractSong"), ElementsAre("play Wave"));
}

TEST_F(JokesTest, JokesComeOfThemselvesOneTimeInFourAndNeverOnceTheFourthMinuteIsPast) {
    machine.files.put("/home/Jokes.txt", "joke");
    EXPECT_EQ(jokesAfter(0), 0);
    for (std::int16_t ticks = 1; ticks <= 4; ++ticks) EXPECT_NEAR(jokesAfter(ticks), 50, 25) << ticks;
    EXPECT_EQ(jokesAfter(5), 0);
    EXPECT_EQ(jokesAfter(32767), 0);
    program().run([](Program& inside) { EXPECT_EQ(inside.jokes().JokeTicks, 32767); });
}

TEST_F(JokesTest, UnlessTheProfileWantsThemNoJokesComeUnasked) {
    machine.setting("/home", "Options", "Jokes", "on");
    machine.files.put("/home/Jokes.txt", "joke");
    EXPECT_EQ(jokesAfter(1), 0);
    EXPECT_THAT(linesOf("mnuJokeTell"), Contains("speak joke joke"));
}

}  // namespace
}  // namespace velmora
