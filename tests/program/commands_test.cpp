#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

#include "character/vocabulary.h"
#include "platform/engine/command_collection.h"
#include "tests/program/started_program.h"

namespace velmora {
namespace {

using namespace testing;

using Names = std::array<std::string, CommandList::rows>;

Names unused() {
    Names names;
    for (std::size_t row = 0; row < names.size(); ++row) names[row] = "Item " + std::to_string(row + 1);
    return names;
}

CommandList listOf(const Names& names, const std::string& prefix) {
    return {.name = [names](int row) { return names.at(static_cast<std::size_t>(row)); },
            .target = [prefix](int row) { return prefix + std::to_string(row); }};
}

std::vector<std::string> namesOf(const CommandCollection& commands) {
    std::vector<std::string> names;
    for (const AgentCommand& command : commands.all()) names.push_back(command.Name);
    return names;
}

TEST(Vocabulary, UnusedListsLeaveTwentyEightCommandsOfWhichFourShowAndFiveAskForConfidence) {
    CommandCollection commands;
    InitCommands(commands, {listOf(unused(), {}), listOf(unused(), {})});
    EXPECT_THAT(commands.all(), SizeIs(28));
    EXPECT_TRUE(commands.visible());
    std::vector<std::string> shown;
    std::vector<std::string> asking;
    for (const AgentCommand& command : commands.all()) {
        EXPECT_TRUE(command.Enabled);
        if (command.Visible) shown.push_back(command.Name);
        if (command.Confidence == -60) asking.push_back(command.Name);
        EXPECT_EQ(command.Confidence == -60, command.ConfidenceText == "I didn't understand your request");
    }
    EXPECT_THAT(shown, ElementsAre("General", "Accessories", "My Office", "Internet"));
    EXPECT_THAT(asking, ElementsAre("General", "Accessories", "My Office", "Internet", "MovetoMouse"));
    EXPECT_EQ(commands.Item("ACO").Caption, "aco");
    EXPECT_THROW(commands.Item("aco"), Failure);
}

TEST(Vocabulary, ListsStandBetweenTheCommandsAndTheirFailuresCostOnlyTheirRow) {
    Names office = unused();
    office[0] = "Item 2";  // unused only in the second place
    office[3] = "Tip";     // comes first, so that the command itself finds its name taken
    office[4] = "General";
    office[9] = "[odd|]";
    Names favourites = unused();
    favourites[2] = "Item 2";
    favourites[5] = "News (daily|weekly)";
    CommandLists lists{listOf(office, {}), listOf(favourites, {})};
    const auto name = lists.favourites.name;
    lists.favourites.name = [name](int row) {
        return row == 4 ? throw Failure(errors::objectNotSet) : name(row);
    };

    CommandCollection commands;
    InitCommands(commands, lists);
    const auto names = namesOf(commands);
    EXPECT_THAT(names, SizeIs(28 + 3));
    EXPECT_THAT(std::vector(names.begin() + 15, names.begin() + 20),
                ElementsAre("Wordpad", "Item 2", "Tip", "[odd|]", "Word"));
    EXPECT_THAT(std::vector(names.begin() + 24, names.begin() + 27),
                ElementsAre("NewMail", "News (daily|weekly)", "Messenger"));
    EXPECT_EQ(commands.hear("news weekly").name, "News (daily|weekly)");
    EXPECT_EQ(commands.hear("[ODD|]").name, "[odd|]");
    EXPECT_TRUE(commands.visible());
}

TEST(Vocabulary, CommandsAreHeardByWhatTheirGrammarsSay) {
    CommandCollection commands;
    InitCommands(commands, {});
    struct Case {
        const char* words;
        const char* name;
        int confidence;
    };
    const Case cases[] = {
        {"show me the general menu", "General", 80},
        {"my office menu", "My Office", 95},
        {"the web menu please", "Internet", 90},
        {"follow mouse", "MovetoMouse", 100},
        {"a c o", "ACO", 100},
        {"show file window", "Open File", 100},
        {"new search", "Search the Internet", 100},
        {"E-Mail", "", -100},
        {"e  MAIL", "Check Mail", 100},
        {"messenger log off", "Messenger Log Off", 100},
        {"tell a joke", "Tell joke", 100},
        {"calendar", "", -100},
    };
    for (const Case& expected : cases) {
        const auto heard = commands.hear(expected.words);
        EXPECT_EQ(heard.name, expected.name) << expected.words;
        EXPECT_EQ(heard.confidence, expected.confidence) << expected.words;
    }
    EXPECT_EQ(commands.hear("calculator").name, "Calculator");
    commands.Item("Calculator").Enabled = false;
    EXPECT_EQ(commands.hear("calculator").confidence, -100);
}

class CommandsTest : public StartedProgram {
protected:
    CommandDispatch& dispatch() {
        CommandDispatch* found = nullptr;
        program.run([&](Program& inside) { found = &inside.dispatch(); });
        return *found;
    }

    SimulatedProgram& program = StartedProgram::program();
};

TEST_F(CommandsTest, CommandsOfTheHostItselfAct) {
    program.pointer().put("", {500, 300});
    program.say("go to mouse").say("general").say("change agent");
    EXPECT_THAT(program.takeLines(), ElementsAre("heard go to mouse MovetoMouse 100", "moveto 430 300",
                                                 "heard general General 100", "popup FrmMain.mnuGeneral",
                                                 "heard change agent ChangeAgent 100", "choose"));
    EXPECT_EQ(dispatch().LastVoice, "change agent");
}

TEST_F(CommandsTest, ChainRunsTheFirstNameThatFitsExactly) {
    std::vector<std::string> done;
    auto& actions = dispatch().actions;
    const auto records = [&done](const std::string& what) { return [&done, what] { done.push_back(what); }; };
    actions.mnuAbout_Click = records("about");
    actions.mnuOptions_Click = records("options");
    actions.startWord = records("word");
    actions.Check_Mail = records("mail");
    actions.giveTip = records("tip");
    actions.cmdFrames_Click = [&done](int index) { done.push_back("frame " + std::to_string(index)); };
    for (const char* name : {"About", "about", "Options", "Word", "Check Mail", "Tip", "Alarm", "Open File",
                             "Search the Internet", "aco", "ACO", "Read Selection", "No such", ""})
        program.command(name);
    EXPECT_THAT(done,
                ElementsAre("about", "options", "word", "mail", "tip", "frame 2", "frame 1", "frame 0"));
    EXPECT_THAT(program.takeLines(), ElementsAre("form FrmMain shown"));  // the first frame brings it up
}

TEST_F(CommandsTest, FramesBringTheWindowBackFromItsIcon) {
    program.run([](Program& inside) { inside.main().setWindowState(WindowStates::minimised); });
    EXPECT_EQ(program.command("Alarm").value("FrmMain.Visible"), "True");
    program.run([](Program& inside) { EXPECT_EQ(inside.main().windowState(), WindowStates::normal); });
}

TEST_F(CommandsTest, ListsComeBeforeTheCommandsBehindThemAndAfterThoseBefore) {
    int tips = 0;
    Names favourites = unused();
    favourites[1] = "Tip";
    favourites[2] = "Calculator";
    favourites[3] = "Both";
    Names office = unused();
    office[7] = "Both";
    office[8] = "Messenger";
    program.run([&](Program& inside) {
        inside.commandLists() = {listOf(office, "program"), listOf(favourites, "site")};
        inside.dispatch().actions.giveTip = [&] { ++tips; };
        inside.dispatch().actions.mnuMessengerOpen_Click = [&] { ++tips; };
        inside.dispatch().actions.mnuCalculator_Click = [&] { ++tips; };
    });
    for (const char* name : {"Tip", "Both", "Messenger"}) program.command(name);
    EXPECT_EQ(tips, 0);
    program.command("Calculator");
    EXPECT_EQ(tips, 1);
    EXPECT_THAT(program.takeLines(), ElementsAre("open site1 ", "open site3 ", "open program8 "));
}

TEST_F(CommandsTest, EditedEntryLosesItsCommandUntilTheNextStart) {
    Names favourites = unused();
    favourites[0] = "Paper";
    program.run([&](Program& inside) {
        inside.commandLists().favourites = listOf(favourites, "site");
        inside.character().steps.InitCommands();
    });
    EXPECT_THAT(program.say("paper").takeLines(), ElementsAre("heard paper Paper 100", "open site0 "));
    favourites[0] = "Journal";
    program.run([&](Program& inside) { inside.commandLists().favourites = listOf(favourites, "site"); });
    EXPECT_THAT(program.command("Paper").takeLines(), IsEmpty());
}

TEST_F(CommandsTest, MinusSixtyFailsForEveryCommandAndMinusFiftyNinePasses) {
    int tips = 0;
    dispatch().actions.giveTip = [&] { ++tips; };
    program.command("Tip", -59);
    EXPECT_EQ(tips, 1);
    EXPECT_THAT(program.takeLines(), IsEmpty());
    program.command("Tip", -60);
    EXPECT_EQ(tips, 1);
    EXPECT_THAT(program.takeLines(), Contains("listen off"));
}

// The count is never set back, not even by a command that was understood.
TEST_F(CommandsTest, FailuresClimbALadderOfExcusesThatIsNeverLeft) {
    const auto linesOfFailure = [this] {
        program.takeLines();
        return program.say("mumble").takeLines();
    };
    const char* heard = "heard mumble  -100";
    const char* again = "speak Better try that again. Better try that again.";
    EXPECT_THAT(linesOfFailure(), ElementsAre(heard, "listen off", "play DontRecognize",
                                              StartsWith("speak Huh?|What?|Say Again? "), again));
    EXPECT_THAT(
        linesOfFailure(),
        ElementsAre(heard, "listen off", "play Decline",
                    StartsWith("speak Can you say that again?|What was that?|once more please. "), again));
    EXPECT_THAT(linesOfFailure(), ElementsAre(heard, "listen off", "play StartListening", "listen on"));
    program.command("General");
    EXPECT_THAT(linesOfFailure(), ElementsAre(heard, "listen off"));
    EXPECT_THAT(linesOfFailure(), ElementsAre(heard, "listen off"));
}

TEST_F(CommandsTest, FailureOfACommandOrOfAnExcuseIsShownInItsBox) {
    dispatch().actions.giveTip = [] { throw Failure(errors::fileNotFound); };
    program.command("Tip");
    EXPECT_THAT(program.takeLines(), ElementsAre("box Agent Command 53\\nFile not found none ok"));
    program.run([](Program& inside) {
        inside.character().Character = {};
        inside.dispatch().BadResult();
        EXPECT_EQ(inside.dispatch().BadResultCount, 0);
    });
    EXPECT_THAT(program.takeLines(), ElementsAre(StartsWith("box Bad Result 91\\n")));
}

TEST_F(CommandsTest, MessengerLogsOnAndOffOnlyWhereThatChangesAnything) {
    bool loggedOn = false;
    std::vector<std::string> done;
    auto& actions = dispatch().actions;
    actions.LoggedOn = [&] { return loggedOn; };
    actions.mnuMessengerOpen_Click = [&] { done.emplace_back("open"); };
    actions.LogIn = [&] { done.emplace_back("in"); };
    actions.LogOut = [&] { done.emplace_back("out"); };
    program.say("messenger log off").say("messenger log on");
    loggedOn = true;
    program.say("messenger log on").say("messenger log off");
    EXPECT_THAT(done, ElementsAre("open", "in", "out"));
    EXPECT_THAT(program.takeSaid(), ElementsAre("You are not logged into the messenger service right now.",
                                                "You are already logged into the messenger service Ann"));
}

}  // namespace
}  // namespace velmora
