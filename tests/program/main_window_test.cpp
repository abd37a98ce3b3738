#include <gmock/gmock.h>

#include <stdexcept>

#include "core/crypter.h"
#include "tests/program/started_program.h"

namespace velmora {
namespace {

using namespace testing;

class MainWindow : public StartedProgram {
protected:
    /// The frames in view, and whether any has become invisible on the way.
    std::string framesInView() {
        std::string names;
        for (const std::string name : {"FrameSearch", "FrameOpen", "FrameAlarm", "FrameMail"}) {
            EXPECT_EQ(program().value(name + ".Visible"), "True");
            if (program().value(name + ".Left") == std::to_string(FrmMain::panelPlace.Left)) names += name;
        }
        return names;
    }
};

TEST_F(MainWindow, OnePanelIsInViewAtFirstTheSearch) {
    EXPECT_EQ(framesInView(), "FrameSearch");
    const std::array panels{"FrameSearch", "FrameOpen", "FrameAlarm", "FrameMail"};
    for (const int index : {3, 1, 2, 0}) {
        program().click("cmdFrames(" + std::to_string(index) + ")");
        EXPECT_EQ(framesInView(), panels.at(static_cast<std::size_t>(index)));
    }
}

TEST_F(MainWindow, AlarmPanelOpensAtThePresentTime) {
    EXPECT_EQ(program().click("cmdFrames(1)").value("AlarmTPick"), "00:00:00");
    EXPECT_EQ(program().click("cmdFrames(2)").value("AlarmTPick"), "09:05:00");
}

TEST_F(MainWindow, AlarmIsCheckedEachSecondAlsoIfThatFails) {
    int checks = 0;
    program().run([&](Program& inside) {
        inside.main().windowSteps.checkAlarm = [&] {
            ++checks;
            throw Failure(errors::typeMismatch);
        };
    });
    machine.advance(std::chrono::seconds(60));
    EXPECT_EQ(checks, 60);
    EXPECT_EQ(program().value("LblClock"), "9:6");
    EXPECT_THAT(program().takeLines(), IsEmpty());
}

TEST_F(MainWindow, MinimisedItIsHiddenAndOnlyTheTrayBringsItBack) {
    program().clickTray(1).click("CmdMin");
    program().run([](Program& inside) { inside.main().Form_MouseMove(513L * 15); });
    EXPECT_THAT(program().takeLines(),
                ElementsAre("form FrmMain shown", "form FrmMain minimised", "form FrmMain hidden"));
    EXPECT_EQ(program().value("FrmMain.WindowState"), "1");
    EXPECT_EQ(program().clickTray(1).value("FrmMain.WindowState"), "0");
    program().clickTray(2);
    EXPECT_THAT(program().takeLines(), ElementsAre("form FrmMain shown", "popup FrmMain.MnuMain"));
}

TEST_F(MainWindow, TrayRecordHoldsWhatTheSystemAsksFor) {
    program().run([](Program& inside) {
        const NotifyData& record = inside.main().NotifyData;
        EXPECT_EQ(record.hwnd, &inside.main());
        EXPECT_EQ(record.tipText(), "Velmora");
        EXPECT_EQ(NotifyData(inside.main(), std::string(200, 'x')).tipText().size(), 63U);
    });
}

TEST_F(MainWindow, CancelledDialogKeepsTheFileThatWasChosenBefore) {
    EXPECT_THAT(program().click("cmdOpenBrowse").takeLines(),
                ElementsAre(R"(dialog open Open File Executable Files\0*.exe\0All Files (*.*)\0*.*\0\0)"));
    program().pick("  /usr/bin/game");
    program().run([](Program& inside) { inside.main().txtOpenFile.Text = "other"; });
    EXPECT_EQ(program().click("cmdOpenBrowse").pick({}).value("txtOpenFile"), "/usr/bin/game");
    program().takeLines();
    program().run([](Program& inside) { inside.main().fileDialogs.SaveDialog("Scripts"); });
    EXPECT_THAT(program().takeLines(), ElementsAre(R"(dialog save Save File Scripts\0\0)"));
    program().pick("/home/new.txt");
    program().run([](Program& inside) { EXPECT_EQ(inside.main().fileDialogs.DialogFile, "/home/new.txt"); });
}

TEST(FileDialogs, FailureIsToldInABoxOfItsOwn) {
    struct Broken : Dialogs {
        std::vector<std::string> titles;
        BoxAnswer MsgBox(const std::string&, const std::string& title, BoxIcon, BoxButtons) override {
            titles.push_back(title);
            return BoxAnswer::ok;
        }
        std::optional<std::string> openFile(const std::string&, const std::string&) override {
            throw Failure(errors::pathFileAccess);
        }
        std::optional<std::string> saveFile(const std::string&, const std::string&,
                                            const std::string&) override {
            throw Failure(errors::pathFileAccess);
        }
    } broken;
    FileDialogs dialogs(broken);
    dialogs.DialogFile = "kept";
    dialogs.MyDialog("");
    dialogs.SaveDialog("");
    EXPECT_THAT(broken.titles, ElementsAre("Dialog", "Dialog [save]"));
    EXPECT_EQ(dialogs.DialogFile, "kept");
}

TEST_F(MainWindow, EntriesOfTheMainMenuOpenWhatTheyName) {
    machine.setting("/home", "Messenger", "UID", Encipher("4711", mainKey));
    machine.setting("/home", "Directory", "Endpoint", "http://directory.example", "platform.conf");
    struct Case {
        std::string entry, line;
    };
    for (const auto& [entry, line] :
         {Case{"mnuHelp", "open /home/help/velmora.html "},
          Case{"mnuMyHome", "open http://directory.example/messenger/Home.asp?User=Ann&UID=4711 "},
          Case{"mnuAbout", "form frmAbout shown"}}) {
        EXPECT_THAT(program().menu(entry).takeLines(), Contains(line));
    }
    EXPECT_THAT(program().click("frmAbout.cmdSysInfo").takeLines(), ElementsAre("open system-information "));
    machine.setting("/home", "Community", "Site", "http://community.example", "platform.conf");
    EXPECT_THAT(program().menu("mnuMyHome").takeLines(),
                ElementsAre("open http://community.example/messenger/Home.asp?User=Ann&UID=4711 "));
}

TEST_F(MainWindow, VersionIsSpokenWithPointsAndShownWithDots) {
    program().menu("mnuVersion");
    const std::string point = R"([0-9]+\\\\Map="point"="[.]"\\\\)";
    const std::string spoken = "This is version " + point + point + "[0-9]+ of Velmora.";
    EXPECT_THAT(program().takeLines(),
                ElementsAre(testing::MatchesRegex("speak " + spoken +
                                                  " This is version [0-9]+[.][0-9]+[.][0-9]+ of Velmora.")));
}

TEST_F(MainWindow, MessengerEntryActsOnItsCaption) {
    std::string calls;
    bool loggedOn = true;
    program().run([&](Program& inside) {
        auto& messenger = inside.main().messenger;
        messenger.Show = [&] { calls += "show "; };
        messenger.LoggedOn = [&] { return loggedOn; };
        messenger.LogOut = [&] { calls += "logout "; };
        messenger.Unload = [&] { calls += "unload "; };
    });
    program().menu("mnuMessengerOpen");
    program().run([](Program& inside) { inside.main().menu("mnuMessengerOpen").Caption = "Close"; });
    program().menu("mnuMessengerOpen");
    loggedOn = false;
    program().menu("mnuMessengerOpen");
    EXPECT_EQ(calls, "show logout unload unload ");
}

TEST_F(MainWindow, EveryEntryCanBePickedAndAWrongNameIsABug) {
    EXPECT_THAT(program().click("cmdOptions").takeLines(), ElementsAre("popup FrmMain.mnuOptionsMenu"));
    program().run([](Program& inside) {
        FrmMain& main = inside.main();
        EXPECT_EQ(main.menu("mnuMsgFile", 4).parent(), &main.menu("mnuMessengerFiles"));
        EXPECT_THROW(main.menu("mnuExits"), std::logic_error);
        EXPECT_THROW(main.menu("mnuMsgFile", 5), std::logic_error);
        for (Menu* entry : std::vector(main.menus())) {
            if (entry->name() != "mnuExit") entry->click();
        }
    });
}

}  // namespace
}  // namespace velmora
