#include <gmock/gmock.h>

#include "core/user_list.h"
#include "tests/support/simulated_machine.h"
#include "tests/support/simulated_program.h"

namespace velmora {
namespace {

using namespace testing;

class Login : public testing::Test {
protected:
    Login() { machine.files.createFolder("/home"); }

    void logIn(SimulatedProgram& program, const std::string& name, const std::string& password) {
        program.type("txtUserName", name).type("txtPassword", password).takeLines();
        program.click("cmdOK");
    }

    SimulatedMachine machine;
};

TEST_F(Login, TickingTheDefaultProfileStartsAndStandsForLaterStarts) {
    auto& program = machine.start("/home");
    EXPECT_THAT(program.takeLines(), ElementsAre("form frmLogin loaded", "form frmLogin shown"));
    program.click("chkDefault");
    EXPECT_THAT(program.takeLines(), Contains("speak Hi my name is Merlin. Welcome to Velmora. "
                                              "Hi my name is Merlin. Welcome to Velmora."));
    EXPECT_EQ(machine.files.read("/home/Velmora.ini"), "[Options]\nDefault=True\n");
    EXPECT_EQ(machine.files.privacyOf("/home/Velmora.ini"), Privacy::ownersOnly);
    program.menu("mnuExit");
    EXPECT_THAT(machine.start("/home").takeLines(), Not(Contains(StartsWith("form frmLogin"))));
}

TEST_F(Login, RightPasswordOpensThatUsersProfileAndTheDialogShowsOnceMoreMeanwhile) {
    machine.users("/home", {"Ann:pass:word", "Bob:x"});
    machine.setting("/home", "User", "Name", "Ann", "Ann.ini");
    auto& program = machine.start("/home");
    logIn(program, "Ann", "pass:word");
    EXPECT_THAT(
        program.takeLines(),
        ElementsAre("form frmLogin hidden", "form frmLogin shown", "form FrmSplash loaded",
                    "form FrmSplash shown", "form FrmOptions loaded", "tray add Velmora",
                    "form FrmMain loaded", "character Merlin", "show", "play Wave",
                    "speak Morning Ann. Morning Ann.", "play RestPose", "form FrmCalender loaded",
                    "play Read", "speak You have no appointments today. You have no appointments today.",
                    "play ReadReturn", "form FrmSplash unloaded", "form frmLogin unloaded"));
}

TEST_F(Login, UnknownNameIsMetWithSilenceAndAWrongPasswordWithABox) {
    machine.users("/home", {"Ann:secret"});
    auto& program = machine.start("/home");
    logIn(program, "ann", "secret");
    EXPECT_THAT(program.takeLines(), IsEmpty());
    logIn(program, "Ann", "Secret");
    EXPECT_THAT(program.takeLines(),
                ElementsAre("box Login Invalid Password, try again! none ok", "focus txtPassword"));
    EXPECT_EQ(program.value("txtPassword.SelLength"), "6");
    EXPECT_EQ(program.value("frmLogin.Visible"), "True");
}

TEST_F(Login, LineWithoutAColonIsAnErrorOnlyWhenTheSearchReachesIt) {
    machine.users("/home", {"Ann:secret", "rubbish"});
    auto& program = machine.start("/home");
    logIn(program, "Bob", "");
    EXPECT_THAT(program.takeLines(),
                ElementsAre("box Error Notice. Invalid procedure call or argument none ok"));
    logIn(program, "Ann", "secret");
    EXPECT_THAT(program.takeLines(), Contains("form FrmMain loaded"));
}

TEST_F(Login, CancelEndsTheProgramAndStillLeavesAList) {
    auto& program = machine.start("/home");
    program.takeLines();
    EXPECT_TRUE(program.click("cmdCancel").ended());
    EXPECT_THAT(program.takeLines(), ElementsAre("form frmLogin hidden", "form frmLogin unloaded"));
    EXPECT_EQ(machine.files.read("/home/Users.vlu"), "");
}

TEST_F(Login, EndOfTheDialogWritesTheListAnewAndDropsNeighbouringDoubles) {
    machine.users("/home", {"Ann:a", "Bob:b", "Ann:a"});
    const std::string doubled = machine.files.read("/home/Users.vlu");
    const std::string ann = UserList::encode({"Ann:a"});
    machine.files.put("/home/Users.vlu", ann + doubled);
    machine.start("/home").click("cmdCancel");
    EXPECT_EQ(machine.files.read("/home/Users.vlu"), doubled);
}

TEST_F(Login, ListThatCanNotBeReadIsReportedAndNotOverwritten) {
    machine.users("/home", {"Ann:a"});
    machine.files.makeUnreadable("/home/Users.vlu");
    auto& program = machine.start("/home");
    EXPECT_THAT(program.takeLines(),
                Contains("box Error loading login dialog. Path/File access error none ok"));
    program.click("cmdCancel");
    EXPECT_EQ(machine.files.writes(), 0);
}

TEST_F(Login, UntickingWritesFalseAndStays) {
    machine.setting("/home", "Options", "Default", "False");
    auto& program = machine.start("/home");
    program.run([](Program& inside) {  // as a tick left over from before would stand
        inside.login().chkDefault.Value.adopt(1);
    });
    program.takeLines();
    EXPECT_THAT(program.click("chkDefault").takeLines(), IsEmpty());
    EXPECT_EQ(machine.files.read("/home/Velmora.ini"), "[Options]\nDefault=False\n");
}

TEST_F(Login, TwoProgramsOfOneMachineKeepTheirOwnProfiles) {
    machine.setting("/one", "User", "Name", "Ann");
    machine.setting("/two", "User", "Name", "Bob");
    for (const char* folder : {"/one", "/two"}) machine.setting(folder, "Options", "Default", "True");
    auto& one = machine.start("/one");
    auto& two = machine.start("/two");
    EXPECT_THAT(one.takeSaid(), Contains("Morning Ann."));
    EXPECT_THAT(two.takeSaid(), Contains("Morning Bob."));
    EXPECT_TRUE(one.menu("mnuExit").ended());
    EXPECT_FALSE(two.ended());
}

}  // namespace
}  // namespace velmora
