#include <gmock/gmock.h>

#include "tests/program/started_program.h"

namespace velmora {
namespace {

using namespace testing;

class Options : public StartedProgram {
protected:
    void file(const std::string& name, std::string content) {
        machine.files.put("/home/" + name, std::move(content));
    }
    std::string content(const std::string& name) { return machine.files.read("/home/" + name); }
    std::string stored(const std::string& section, const std::string& key) {
        return IniSettingsFile(machine.files).read(section, key, "(none)", "/home/Velmora.ini");
    }
    /// Opens the window by that entry of the menu; what that prints is not looked at.
    SimulatedProgram& opened(const std::string& entry) {
        program().menu(entry).takeLines();
        return program();
    }
    std::vector<std::string> save() { return program().click("FrmOptions.CmdSave").takeLines(); }
    /// The pages that are visible, and the tab, by their numbers: "14 tab 1".
    std::string pages() {
        std::string seen;
        for (int page = 1; page <= 5; ++page) {
            const std::string number = std::to_string(page);
            if (program().value("Frame(" + number + ").Visible") == "True") seen += number;
        }
        return seen + " tab " + program().value("FrmOptions.TabStrip.Selected");
    }
    bool listensFor(const std::string& command) {
        bool enabled = false;
        program().run([&](Program& inside) {
            enabled = inside.character().Character->Commands().Item(command).Enabled;
        });
        return enabled;
    }
    std::string rowsOfTen(const std::string& first) {
        std::string text = first;
        for (int row = 2; row <= 10; ++row) {
            for (int line = 0; line < 2; ++line)
                text.append("Item ").append(std::to_string(row)).append("\r\n");
        }
        return text;
    }
};

std::vector<std::string> report(const std::string& text, std::vector<std::string> after) {
    std::vector<std::string> lines{"play Write", "speak " + text + " " + text, "play WriteReturn"};
    lines.insert(lines.end(), after.begin(), after.end());
    return lines;
}

TEST_F(Options, EachEntryOpensItsPage) {
    struct Case {
        const char* entry;
        int page;
    };
    for (const auto& [entry, page] :
         {Case{"mnuOptions", 1}, Case{"mnuOptionsWindow", 1}, Case{"mnuOptionsOffice", 1},
          Case{"mnuOfficeConfigure", 1}, Case{"mnuOptionsAccessories", 2}, Case{"mnuAConfigure", 2},
          Case{"mnuOptionsFav", 3}, Case{"mnuFavouritesConfigure", 3}, Case{"mnuOptionsMail", 4},
          Case{"mnuJokesEdit", 5}}) {
        EXPECT_THAT(program().menu(entry).takeLines(), Contains("form FrmOptions shown"));
        EXPECT_EQ(pages(), std::to_string(page) + " tab 1") << entry;
        EXPECT_THAT(program().click("cmdDone").takeLines(), Contains("form FrmOptions unloaded"));
    }
    EXPECT_THAT(program().say("show options window").takeLines(), Contains("form FrmOptions shown"));
}

TEST_F(Options, EntryLeavesThePageBeforeVisibleAndTheTabAsItWas) {
    opened("mnuOptionsMail");
    EXPECT_EQ(pages(), "4 tab 1");
    EXPECT_THAT(opened("mnuJokesEdit").takeLines(), IsEmpty());
    EXPECT_EQ(pages(), "45 tab 1");
    program().select("TabStrip", 1);  // the tab that is chosen, but not the page in view
    EXPECT_EQ(pages(), "14 tab 1");
    program().select("TabStrip", 1);
    EXPECT_EQ(pages(), "14 tab 1");
    program().run([](Program& inside) { inside.options().Show_Frame("mail"); });
    EXPECT_EQ(pages(), "14 tab 1");
    program().select("TabStrip", 3);
    EXPECT_EQ(pages(), "34 tab 3");
}

TEST_F(Options, BeforeAnyPageWasInViewNothingIsSaved) {
    program();
    const int afterStart = machine.files.writes();
    EXPECT_THAT(save(), IsEmpty());
    EXPECT_EQ(machine.files.writes(), afterStart);
    program().select("TabStrip", 3);
    EXPECT_EQ(pages(), "3 tab 3");
    save();
    EXPECT_EQ(machine.files.writes(), afterStart + 1);
}

TEST_F(Options, OfficeRowsAreEditedInPlaceAndSavedWithTheirMenu) {
    opened("mnuOptions").select("ComOffice", 0);
    program().type("txtProgrammeName", "Writer").type("txtOfficeCommand", "/usr/bin/writer");
    EXPECT_FALSE(machine.files.exists("/home/Office.txt"));
    EXPECT_EQ(program().value("mnuOffice(0).Visible"), "False");

    EXPECT_EQ(save(), report("I have updated your office menu.", {"play Restpose"}));
    const std::string once = content("Office.txt");
    EXPECT_EQ(once, rowsOfTen("Writer\r\n/usr/bin/writer\r\n"));
    EXPECT_EQ(program().value("mnuOffice(0)"), "Writer");
    EXPECT_EQ(save(), report("I have updated your office menu.", {"play Restpose"}));
    EXPECT_EQ(content("Office.txt"), once);

    EXPECT_EQ(program().select("ComOffice", 1).value("txtOfficeCommand"), "Item 2");
    EXPECT_EQ(program().select("ComOffice", 0).value("txtProgrammeName"), "Writer");
    EXPECT_EQ(program().value("txtOfficeCommand"), "/usr/bin/writer");
    program().type("txtOfficeCommand", "/usr/bin/other");
    program().select("ComOffice", 0);  // once more the row that is chosen
    EXPECT_EQ(program().value("txtOfficeCommand"), "/usr/bin/other");

    program().type("txtProgrammeName", "Itemised bills");  // begins as an unused row does
    save();
    EXPECT_EQ(program().value("mnuOffice(0).Visible"), "False");
    program().say("writer");  // the commands follow at the next start only
    EXPECT_THAT(program().takeLines(), Contains("heard writer  -100"));
}

TEST_F(Options, OneRowNumberServesBothListsAndIsTheFirstRowAtFirst) {
    opened("mnuOptionsFav").type("txtFavouriteSite", "Home");
    program().type("txtURL", "http://home.example/").select("FrmOptions.ComOffice", 6);
    program().type("txtURL", "http://seven.example/");
    EXPECT_EQ(save(), report("I have updated your favourites menu.", {"play Restpose"}));
    program().run([](Program& inside) {
        EXPECT_EQ(inside.options().comFavourites.List(0), "Home");
        EXPECT_EQ(inside.options().comFavouriteURL.List(0), "http://home.example/");
        EXPECT_EQ(inside.options().comFavouriteURL.List(6), "http://seven.example/");
    });
    EXPECT_EQ(program().value("mnuCustom(0)"), "Home");
    EXPECT_THAT(content("favourites.txt"), testing::StartsWith("Home\r\nhttp://home.example/\r\nItem 2\r\n"));
    EXPECT_FALSE(machine.files.exists("/home/Office.txt"));
}

TEST_F(Options, UnsavedEditsGoWithTheWindow) {
    file("favourites.txt", "Home\nhttp://home.example/\n");
    opened("mnuOptionsFav").select("comFavourites", 0);
    program().type("txtURL", "http://changed.example/").close("FrmOptions");
    program().menu("mnuCustom(0)");  // loads it again, hidden
    EXPECT_THAT(program().takeLines(), ElementsAre("form FrmOptions unloaded", "form FrmOptions loaded",
                                                   "open http://home.example/ "));
    EXPECT_EQ(content("favourites.txt"), "Home\nhttp://home.example/\n");
}

TEST_F(Options, BrowseTakesTheChosenProgram) {
    opened("mnuOptions").click("cmdOfficeBrowse");
    EXPECT_EQ(program().pick("/bin/true").value("txtOfficeCommand"), "/bin/true");
}

TEST_F(Options, AccessoriesFollowTheirHiddenTextsOnceTheyAreSaved) {
    machine.setting("/home", "Accessories", "CD", "Sel");
    EXPECT_EQ(program().value("mnuCDPlayer.Visible"), "True");
    EXPECT_EQ(program().value("ChkCD"), "1");
    EXPECT_EQ(program().value("TxtCalcSel"), "Error!");
    EXPECT_EQ(program().value("mnuCalculator.Visible"), "False");
    EXPECT_TRUE(listensFor("Calculator"));  // at the start there is no character to tell

    opened("mnuAConfigure").click("ChkCD");
    EXPECT_EQ(program().click("ChkWordpad").value("mnuCDPlayer.Visible"), "True");
    EXPECT_EQ(save(), report("I have updated the accessories menu.", {}));
    struct Case {
        std::string key, value, entry, command, on;
    };
    for (const auto& [key, value, entry, command, on] :
         {Case{"Calc", "Error!", "mnuCalculator", "Calculator", "False"},
          Case{"CD", "", "mnuCDPlayer", "CD Player", "False"},
          Case{"Notepad", "Error!", "mnuNotepad", "Notepad", "False"},
          Case{"Wordpad", "Sel", "mnuWordpad", "Wordpad", "True"}}) {
        EXPECT_EQ(stored("Accessories", key), value);
        EXPECT_EQ(program().value(entry + ".Visible"), on) << entry;
        EXPECT_EQ(listensFor(command), on == "True") << command;
    }
    const std::string once = content("Velmora.ini");
    save();
    EXPECT_EQ(content("Velmora.ini"), once);

    program().click("cmdDone");
    opened("mnuAConfigure");
    EXPECT_EQ(program().value("ChkWordpad"), "0");  // a window that comes back knows nothing of them
    EXPECT_EQ(program().value("mnuWordpad.Visible"), "True");
    save();
    EXPECT_EQ(program().value("mnuWordpad.Visible"), "False");
    EXPECT_FALSE(listensFor("Wordpad"));
}

}  // namespace
}  // namespace velmora
