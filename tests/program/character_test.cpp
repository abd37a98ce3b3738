#include <gmock/gmock.h>

#include "tests/program/started_program.h"

namespace velmora {
namespace {

using testing::AnyOf;
using testing::ElementsAre;

class CharacterTest : public StartedProgram {
protected:
    SimulatedProgram& program = StartedProgram::program();
};

TEST_F(CharacterTest, ButtonsOfTheMouseStopPopUpAndListen) {
    program.clickCharacter(1).clickCharacter(2).clickCharacter(4).doubleClickCharacter(2);
    program.doubleClickCharacter(1);
    EXPECT_THAT(program.takeLines(), ElementsAre("stopall", "popup FrmMain.MnuMain", "listen on"));
}

TEST_F(CharacterTest, ClickCutsTheIntroductionOffAndTheWizardStillOpens) {
    int opened = 0;
    const auto introduce = [&](Program& inside) {
        inside.character().steps.showProfile = [&] { ++opened; };
        inside.character().RequestProfile = inside.character().Character->Speak("Let's set up your profile");
    };
    program.run(introduce);
    EXPECT_EQ(opened, 1);
    program.stage().paused = true;
    program.run(introduce);
    EXPECT_EQ(opened, 1);
    program.clickCharacter(1);
    EXPECT_EQ(opened, 2);
}

TEST_F(CharacterTest, ComesOutOnlyIfItIsHidden) {
    program.run([](Program& inside) { inside.character().AgentVisible(); });
    program.menu("mnuHide");
    program.run([](Program& inside) { inside.character().AgentVisible(); });
    program.menu("mnuHide").menu("mnuHide");
    EXPECT_THAT(program.takeLines(), ElementsAre("hide", "show", "hide", "show"));
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

}  // namespace
}  // namespace velmora
