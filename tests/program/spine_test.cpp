#include <gmock/gmock.h>
#include <algorithm>

#include "core/crypter.h"
#include "tests/support/simulated_machine.h"
#include "tests/support/simulated_program.h"

namespace velmora {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using namespace testing;

class Spine : public testing::Test {
protected:
    SimulatedMachine machine;
};

TEST_F(Spine, FirstRunIntroducesTheCharacterAndLeadsToTheWizard) {
    auto& program = machine.startFor("");
    EXPECT_THAT(
        program.takeLines(),
        ElementsAre(
            "form FrmSplash loaded", "form FrmSplash shown", "form FrmOptions loaded", "tray add Velmora",
            "form FrmMain loaded", "character Merlin", "show", "play Greet",
            "speak Hi my name is Merlin. Welcome to Velmora. Hi my name is Merlin. Welcome to Velmora.",
            "play RestPose", "play Think",
            "speak We'd better set up your user profile We'd better set up your user profile",
            "form FrmSplash unloaded", "moveto 646 146", "play GestureDown",
            "speak This information helps me notify you when updates are available. This information helps "
            "me "
            "notify you when updates are available.",
            "play RestPose", "form frmProfile loaded", "form frmProfile shown"));
    EXPECT_FALSE(program.ended());
    EXPECT_EQ(program.value("FrmMain.Visible"), "False");
}

TEST_F(Spine, NameInTheProfileIsGreetedByCharacterAndPartOfTheDay) {
    struct Case {
        const char* character;
        seconds time;
        std::vector<std::string> lines;
    };
    const Case cases[] = {
        {"Merlin",
         hours(11) + minutes(59) + seconds(59),
         {"show", "play Wave", "speak Morning Ann. Morning Ann."}},
        {"Merlin", hours(12), {"show", "play Wave", "speak Afternoon Ann. Afternoon Ann."}},
        {"Merlin", hours(16) + minutes(59), {"show", "play Wave", "speak Afternoon Ann. Afternoon Ann."}},
        {"Merlin", hours(17), {"show", "play Wave", "speak Evening Ann. Evening Ann."}},
        {"Genie", hours(8), {"show", "play Greet", "speak Hello master Hello master"}},
        {"Robby", hours(8), {"show", "play Wave", "speak Hi Ann! Hi Ann!"}},
        {"Peedy", hours(8), {"show", "play Wave", "speak Hi Ann. Hi Ann."}},
        {"merlin", hours(0), {"show", "speak Good MorningAnn! Good MorningAnn!"}},
    };
    for (const Case& expected : cases) {
        SCOPED_TRACE(expected.character);
        SimulatedMachine fresh;
        fresh.startsAt.time = expected.time;
        fresh.character = expected.character;
        auto& program = fresh.startFor("Ann");
        int reported = 0;
        program.takeLines();
        program.run([&](Program& inside) {
            inside.character().steps.CheckTodaysApps = [&] { ++reported; };
            inside.character().GreetUser();
        });
        auto lines = expected.lines;
        lines.emplace_back("play RestPose");
        EXPECT_EQ(program.takeLines(), lines);
        EXPECT_EQ(reported, 1);
    }
}

TEST_F(Spine, NameThatReadsErrorCountsAsAFirstRun) {
    EXPECT_THAT(machine.startFor("Error!").takeSaid(), Contains(StartsWith("Hi my name is")));
}

TEST_F(Spine, DefaultProfileMustBeSaidWithACapital) {
    machine.setting("/home", "Options", "Default", "true");
    EXPECT_THAT(machine.start("/home").takeLines(),
                ElementsAre("form frmLogin loaded", "form frmLogin shown"));
}

TEST_F(Spine, SecondCopyInTheSameFolderEndsWithoutAWord) {
    auto& first = machine.startFor("Ann");
    auto& second = machine.start("/home");
    EXPECT_TRUE(second.ended());
    EXPECT_THAT(second.takeLines(),
                ElementsAre("form FrmSplash loaded", "form FrmSplash shown", "form FrmSplash unloaded"));
    machine.setting("/elsewhere", "Options", "Default", "True");
    EXPECT_FALSE(machine.start("/elsewhere").ended());
    EXPECT_FALSE(first.ended());
}

TEST_F(Spine, ExitSaysGoodbyeHidesAndEnds) {
    auto& program = machine.startFor("Ann");
    program.takeLines();
    EXPECT_TRUE(program.menu("mnuExit").ended());
    EXPECT_THAT(
        program.takeLines(),
        ElementsAre("stopall", "play Confused", "speak Are we finished already? Are we finished already?",
                    "hide", "form FrmCalender unloaded", "form FrmOptions unloaded", "form FrmMain unloaded",
                    "tray delete"));
}

TEST_F(Spine, FarewellIsTheCharactersOwn) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"Genie", {"play Sad", "speak Goodbye master. Goodbye master."}},
        {"Robby", {"play Sad", "speak Goodbye Goodbye"}},
        {"Peedy", {"play Sad", "speak OK, bye OK, bye"}},
        {"Nobody", {"speak Goodbye Goodbye"}},
    };
    for (const auto& [character, lines] : cases) {
        SCOPED_TRACE(character);
        SimulatedMachine fresh;
        fresh.character = character;
        auto& program = fresh.startFor("Ann");
        program.takeLines();
        auto said = program.menu("mnuExit").takeLines();
        EXPECT_EQ(std::vector(said.begin() + 1, std::ranges::find(said, "hide")), lines);
    }
}

TEST_F(Spine, ProgramWaitsForTheEndOfTheFarewell) {
    auto& program = machine.startFor("Ann");
    program.stage().paused = true;
    program.menu("mnuExit");
    for (int order = 0; order < 3; ++order) {
        EXPECT_FALSE(program.ended());
        program.run([&](Program&) { program.stage().end(); });
    }
    EXPECT_TRUE(program.ended());
}

TEST_F(Spine, CloseBoxOfTheMainWindowDoesNotWaitForTheFarewell) {
    auto& program = machine.startFor("Ann");
    program.stage().paused = true;
    program.takeLines();
    EXPECT_TRUE(program.close("FrmMain").ended());
    EXPECT_THAT(program.takeLines(), Contains("speak Are we finished already? Are we finished already?"));
}

// A recognition that has failed once captures every completion that the program waits for, its own end
// included.
TEST_F(Spine, FailedRecognitionHoldsUpTheEndUntilTheWindowIsClosed) {
    auto& program = machine.startFor("Ann");
    program.run([](Program& inside) {
        auto& host = inside.character();
        host.RequestBadResult = host.Character->Speak("Huh?");
    });
    program.takeLines();
    EXPECT_FALSE(program.menu("mnuExit").ended());
    EXPECT_THAT(program.takeLines(),
                ElementsAre("stopall", "play Confused", HasSubstr("finished already?"), "hide",
                            "speak Better try that again. Better try that again."));
    EXPECT_TRUE(program.close("FrmMain").ended());
}

TEST_F(Spine, ExplanationThatIsKeptRunsTheTourAndThenLooksAtTheReply) {
    auto& program = machine.startFor("Ann");
    program.takeLines();
    int asked = 0;
    program.run([&](Program& inside) {
        auto& host = inside.character();
        host.steps.popUpReplyMenu = [&] { ++asked; };
        const Request dropped = host.Character->Speak("Nobody waits for this");
        host.RequestExplain = host.Character->Play("RestPose");
        host.RequestReply = host.RequestExplain;
    });
    const auto said = program.takeSaid();
    ASSERT_EQ(said.size(), 1U + 5U);  // the tour once, though two requests have ended
    EXPECT_EQ(said[1], "My main menu. lists all the different ways I can help you.");
    EXPECT_EQ(asked, 1);
}

TEST_F(Spine, LoadOfTheMainWindowReactsToFailuresByTheirNumber) {
    struct Case {
        long number;
        bool goesOn;
        const char* box;
    };
    const Case cases[] = {
        {errors::pathNotFound, true, ""},
        {errors::typeMismatch, true, ""},
        {errors::characterUnavailable, false, ""},
        {errors::objectNotSet, false,
         "box Error during StartUp An error occured while starting 'Velmora'.\\n"},
        {errors::fileNotFound, false,
         "box An Error Occured Error # 53 was generated by Velmora\\rFile not found\\n"},
    };
    for (const Case& expected : cases) {
        SCOPED_TRACE(expected.number);
        SimulatedMachine fresh;
        auto& program = fresh.start("/home");
        bool reached = false;
        program.run([&](Program& inside) {
            inside.main().steps.loadLaunchLists = [&] { throw Failure(expected.number); };
            inside.main().steps.buildSongList = [&] { reached = true; };
        });
        program.takeLines();
        program.click("chkDefault");
        std::string boxes;
        for (const auto& line : program.takeLines()) boxes += line.starts_with("box ") ? line : "";
        EXPECT_EQ(reached, expected.goesOn);
        EXPECT_THAT(boxes, StartsWith(expected.box));
        if (expected.number == errors::fileNotFound) program.answer(BoxAnswer::no);
        EXPECT_THAT(program.takeLines(), Not(Contains(StartsWith("open"))));
        EXPECT_FALSE(program.ended());
    }
}

TEST_F(Spine, ErrorReportGoesToTheFeedbackAddressOfThisMachine) {
    machine.setting("/home", "Feedback", "Address", "help@example.org", "platform.conf");
    auto& program = machine.start("/home");
    program.run([](Program& inside) {
        inside.main().steps.loadLaunchLists = [] { throw Failure(errors::pathFileAccess, {}, "Lists"); };
    });
    program.click("chkDefault").takeLines();
    program.answer(BoxAnswer::yes);
    EXPECT_THAT(
        program.takeLines(),
        Contains("open mailto:help@example.org?subject=Velmora Error?body=Error # 75 was generated by "
                 "Lists\\rPath/File access error "));
}

TEST_F(Spine, MissingCharacterGivesTheStartUpBoxAndNoGreeting) {
    machine.character.clear();
    auto& program = machine.startFor("Ann");
    const auto lines = program.takeLines();
    EXPECT_THAT(lines, Contains(StartsWith("box Error during StartUp")));
    EXPECT_THAT(lines, Not(Contains("show")));
    program.menu("mnuExit");  // nobody is there to say goodbye
    EXPECT_TRUE(program.ended());
}

TEST_F(Spine, FailureInTheGreetingIsShownOnce) {
    auto& program = machine.startFor("Ann");
    program.takeLines();
    program.run([](Program& inside) {
        inside.character().steps.CheckTodaysApps = [] { throw Failure(errors::pathNotFound); };
        inside.character().GreetUser();
    });
    EXPECT_THAT(program.takeLines(),
                Contains("box Velmora An Error Occured starting the Agent.\\nError number: 76\\nError "
                         "Description: Path not found none ok"));
}

TEST_F(Spine, ClockShowsNoLeadingZerosAndFollowsTheTime) {
    auto& program = machine.startFor("");
    EXPECT_EQ(program.value("LblClock"), "9:5");
    machine.advance(hours(1) - minutes(5));
    EXPECT_EQ(program.value("LblClock"), "10:0");
}

TEST_F(Spine, DecipheredAccountComesBackAndAMissingOneIsMeaninglessButHarmless) {
    machine.setting("/home", "Messenger", "UID", Encipher("4711", mainKey));
    machine.setting("/home", "Messenger", "NickName", Encipher("Annie\r\n", mainKey));
    machine.startFor("Ann").run([](Program& inside) {
        EXPECT_EQ(inside.main().UID, "4711");
        EXPECT_EQ(inside.main().NickName, "Annie\r\n");
    });
    SimulatedMachine fresh;
    fresh.startFor("").run(
        [](Program& inside) { EXPECT_EQ(inside.main().UID, Decipher("Error!", mainKey)); });
}

TEST_F(Spine, ReadingSettingsNeverWritesAFile) {
    machine.startFor("Ann");
    EXPECT_EQ(machine.files.writes(), 2);  // the two settings of this test
}

}  // namespace
}  // namespace velmora
