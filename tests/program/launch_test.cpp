#include <gmock/gmock.h>

#include "tests/program/started_program.h"

namespace velmora {
namespace {

using namespace testing;

struct Launch : StartedProgram {
    void offerAccessories() {
        for (const char* key : {"Calc", "CD", "Notepad", "Wordpad"})
            machine.setting("/home", "Accessories", key, "Sel");
    }
};

std::string listFile(const std::string& name, const std::string& target) {
    std::string text;
    for (int row = 0; row < 10; ++row) {
        for (const std::string& line : {name, target})
            text.append(line).append(std::to_string(row)).append("\n");
    }
    return text;
}

TEST_F(Launch, ListsFillTheMenusAndTheirEntriesOpenTheRows) {
    machine.files.put("/home/Office.txt", "Writer\n/usr/bin/writer\nItems\nhidden\nEmpty\n");
    machine.files.put("/home/favourites.txt", listFile("Site ", "http://site.example/"));
    EXPECT_EQ(program().value("mnuOffice(0)"), "Writer");
    EXPECT_EQ(program().value("mnuOffice(1).Visible"), "False");  // it begins with "Item"
    EXPECT_EQ(program().value("mnuCustom(9)"), "Site 9");
    for (const char* entry : {"mnuOffice(0)", "mnuOffice(2)", "mnuCustom(9)"}) program().menu(entry);
    EXPECT_THAT(program().takeLines(),
                ElementsAre("open /usr/bin/writer ", "open  ", "open http://site.example/9 "));
}

TEST_F(Launch, ListThatIsMissingOrCannotBeReadLeavesTheRowsUnusedAndTheMenuEmpty) {
    machine.files.createFolder("/home/favourites.txt");
    for (const bool missing : {true, false}) {
        SimulatedMachine fresh;
        fresh.files = machine.files;
        if (!missing) {
            fresh.files.put("/home/Office.txt", "Writer\n");
            fresh.files.makeUnreadable("/home/Office.txt");
        }
        auto& program = fresh.startFor("Ann");
        EXPECT_EQ(program.value("mnuOffice(0).Visible"), "False");
        program.run([](Program& inside) {
            EXPECT_EQ(inside.options().ComOffice.List(0), "Item 1");
            EXPECT_EQ(inside.options().comFavouriteURL.List(9), "Item 10");
        });
    }
}

TEST_F(Launch, WrittenListsReadBackAsTheyWere) {
    machine.files.put("/home/favourites.txt", listFile("Site ", "http://site.example/"));
    program().run([&](Program& inside) {
        auto& options = inside.options();
        options.comFavourites.setList(3, "Changed");
        inside.launchLists().SaveFavouritesList();
        options.Unload();  // its rows go back to their design, and are read again when next used
        EXPECT_EQ(options.comFavourites.List(3), "Changed");
        EXPECT_EQ(options.comFavouriteURL.List(9), "http://site.example/9");
        EXPECT_EQ(inside.main().menu("mnuCustom", 3).Caption.get(), "Changed");
        machine.files.failWrite(1);
        EXPECT_THROW(inside.launchLists().SaveOfficeList(), Failure);
    });
}

TEST_F(Launch, AccessoriesSpeakFirstAndOpenWhatTheMachineNames) {
    offerAccessories();
    machine.setting("/home", "Accessories", "CDPlayer", "/opt/player with blanks", "platform.conf");
    EXPECT_THAT(program().menu("mnuCalculator").takeLines(),
                ElementsAre("speak Let's get that math done. Let's get that math done.", "play Process",
                            "open calculator "));
    program().menu("mnuCDPlayer");
    EXPECT_THAT(program().takeLines(), ElementsAre("speak How about some music? How about some music?",
                                                   "open /opt/player with blanks "));
    EXPECT_THAT(program().menu("mnuNotepad").takeLines(),
                ElementsAre("play Write", "speak Ready to write some notes? Ready to write some notes?",
                            "play ReadReturn", "open text-editor "));
    EXPECT_THAT(program().menu("mnuWordpad").takeSaid(),
                ElementsAre(AnyOf("How about a short story today?", "A poem would be nice, don't you think?",
                                  "What are we writing today?")));
}

TEST_F(Launch, WithoutACharacterTheProgramsStillStart) {
    offerAccessories();
    machine.character.clear();
    program().menu("mnuNotepad").menu("mnuEMail");
    EXPECT_THAT(program().takeLines(), ElementsAre("open text-editor ", "open mailto: "));
    EXPECT_THAT(program().click("cmdOpenGo").takeLines(), ElementsAre("focus txtOpenFile"));
}

TEST_F(Launch, OpenPanelOpensWhatIsTypedAndAsksForItOtherwise) {
    EXPECT_THAT(program().menu("mnuOpenFile").takeLines(), Contains("form FrmMain shown"));
    EXPECT_EQ(program().value("FrameOpen.Left"), std::to_string(FrmMain::panelPlace.Left));
    program().click("cmdOpenGo");
    EXPECT_THAT(program().takeLines(), ElementsAre("play Sad",
                                                   "speak I can't see what you want me to open. "
                                                   "I can't see what you want me to open.",
                                                   "focus txtOpenFile"));
    program().type("txtOpenFile", "; rm -rf /");
    EXPECT_THAT(program().click("cmdOpenGo").takeLines(), ElementsAre("open ; rm -rf / "));
}

}  // namespace
}  // namespace velmora
