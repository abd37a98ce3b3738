#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/simulated_machine.h"
#include "tests/support/simulated_program.h"

namespace velmora {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

class CharacterTest : public testing::Test {
protected:
    CharacterTest() { program.takeLines(); }

    SimulatedMachine machine;
    SimulatedProgram& program = [this]() -> SimulatedProgram& {
        machine.setting("/home", "Options", "Default", "True");
        machine.setting("/home", "User", "Name", "Ann");
        return machine.start("/home");
    }();
};

TEST_F(CharacterTest, HideEntryTakesItAwayAndBringsItBack) {
    program.menu("mnuHide");
    program.menu("mnuHide");
    EXPECT_THAT(program.takeLines(), ElementsAre("hide", "show"));
}

TEST_F(CharacterTest, ButtonsOfTheMouseStopPopUpAndListen) {
    program.clickCharacter(1);
    program.clickCharacter(2);
    program.clickCharacter(4);
    program.doubleClickCharacter(2);
    program.doubleClickCharacter(1);
    EXPECT_THAT(program.takeLines(), ElementsAre("stopall", "popup FrmMain.MnuMain", "listen on"));
}

TEST_F(CharacterTest, ClickCutsTheIntroductionOffAndTheWizardStillOpens) {
    int opened = 0;
    program.run([&](Program& inside) {
        inside.character().steps.showProfile = [&] { ++opened; };
        inside.character().RequestProfile =
            inside.character().Character->Speak("We'd better set up your user profile");
    });
    EXPECT_EQ(opened, 1);
    program.stage().paused = true;
    program.run([&](Program& inside) {
        inside.character().RequestProfile =
            inside.character().Character->Speak("We'd better set up your user profile");
    });
    EXPECT_EQ(opened, 1);
    program.clickCharacter(1);
    EXPECT_EQ(opened, 2);
}

TEST_F(CharacterTest, OnlyARequestThatIsKeptTellsOfItsEnd) {
    program.run([](Program& inside) {
        auto& host = inside.character();
        const Request dropped = host.Character->Speak("Nobody waits for this");
        host.RequestExplain = host.Character->Speak("Wait for this");
    });
    EXPECT_EQ(program.takeSaid().size(), 2U + 5U);  // the tour once, though two lines have ended
}

TEST_F(CharacterTest, ComesOutOnlyIfItIsHidden) {
    program.run([](Program& inside) { inside.character().AgentVisible(); });
    EXPECT_THAT(program.takeLines(), IsEmpty());
    program.menu("mnuHide");
    program.takeLines();
    program.run([](Program& inside) { inside.character().AgentVisible(); });
    EXPECT_THAT(program.takeLines(), ElementsAre("show"));
}

TEST_F(CharacterTest, MovesBesideTheMouseAndToTwips) {
    program.pointer().put("", {500, 300});
    program.run([](Program& inside) {
        auto& host = inside.character();
        host.MoveToMouse();
        host.AgentX = 2010;  // 100.5 pixels: a half goes to the even neighbour
        host.AgentY = 2030;
        host.MoveAgentTo();
        EXPECT_EQ(host.AgentX, 170);
        EXPECT_EQ(host.AgentY, 172);
    });
    EXPECT_THAT(program.takeLines(), ElementsAre("moveto 430 300", "moveto 170 172"));
}

TEST_F(CharacterTest, BarsAreAlternativesAndTagsAreNotShown) {
    program.run([](Program& inside) {
        inside.character().Character->Speak("Huh?|What?");
        inside.character().Character->Speak("Version 1\\Map=\"point\"=\".\"\\2");
        inside.character().Character->Speak("\\Lst\\");
    });
    const auto said = program.takeSaid();
    EXPECT_THAT(said, ElementsAre(AnyOf("Huh?", "What?"), "Version 1.2", "Version 1.2"));
}

TEST_F(CharacterTest, TrayBringsTheWindowAndTheMenu) {
    program.run([](Program& inside) { inside.main().setWindowState(WindowStates::minimised); });
    program.takeLines();
    program.clickTray(1);
    program.clickTray(2);
    EXPECT_THAT(program.takeLines(), ElementsAre("form FrmMain shown", "popup FrmMain.MnuMain"));
}

}  // namespace
}  // namespace velmora
