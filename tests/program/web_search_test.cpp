#include <gmock/gmock.h>

#include "tests/program/started_program.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::ElementsAre;

class WebSearchTest : public StartedProgram {
protected:
    WebSearchTest() {
        for (const char* engine : {"AltaVista", "Excite", "Hotbot", "Infoseek", "Lycos", "Yahoo", "SoftSeek"})
            machine.setting("/home", "Search", engine, std::string("http://") + engine, "platform.conf");
    }

    std::string searchLine() {
        program().takeLines();
        const auto lines = program().click("cmdSearch").takeLines();
        EXPECT_THAT(lines, ElementsAre("play Search", testing::_));
        return lines.back();
    }
};

TEST_F(WebSearchTest, EachServiceGetsTheQueryInItsOwnAddress) {
    program().type("comQuery", "cats & dogs|mice");
    const std::vector<std::string> addresses{
        "http://Lycos/cgi-bin/pursuit?query=Q",
        "http://Yahoo/bin/search?p=Q",
        "http://AltaVista/cgi-bin/query?pg=q&what=web&fmt=.&q=Q",
        "http://Excite/search.gw?c=web&search=Q",
        "http://Hotbot/?SW=web&SM=MC&MT=Q",
        "http://Infoseek/Titles?qt=Q&col=WW&sv=IS&lk=noframes",
        "http://SoftSeek/cgi-bin/search.cgi?keywords=Q&seekindex=index&maxresults=025&cb=",
        "http://audiofind.invalid:70/?audiofindsearch=Q&audiofindtype=",
    };
    for (std::size_t row = 0; row < addresses.size(); ++row) {
        program().select("comEngine", static_cast<int>(row));
        std::string expected = addresses[row];
        expected.replace(expected.find('Q'), 1, "cats & dogs|mice");
        EXPECT_EQ(searchLine(), "open " + expected + " /home");
    }
}

TEST_F(WebSearchTest, WithoutAChoiceTheFirstServiceFollowsTheQuery) {
    program().type("comQuery", "cats");
    EXPECT_EQ(searchLine(), "open catshttp://AltaVista/cgi-bin/query?pg=q&what=web&fmt=.&q= /home");
    program().select("comEngine", 1);
    program().type("comEngine", "Excite");  // typed, not picked
    program().run([](Program& inside) {     // a text that names no service changes nothing
        inside.main().comEngine.setList(0, "Elsewhere");
        inside.main().comEngine.setListIndex(0);
    });
    EXPECT_EQ(searchLine(), "open http://Yahoo/bin/search?p=cats /home");
}

TEST_F(WebSearchTest, HistoryKeepsEveryQueryOfThisRun) {
    program().select("comEngine", 1);
    EXPECT_EQ(searchLine(), "open http://Yahoo/bin/search?p= /home");  // nothing has been typed yet
    program().type("comQuery", "cats");
    searchLine();
    searchLine();
    program().type("comQuery", "dogs").select("comQuery", 2);
    EXPECT_EQ(searchLine(), "open http://Yahoo/bin/search?p=cats /home");
    std::vector<std::string> history;
    program().run([&](Program& inside) {
        for (const Row& row : inside.main().comQuery.listedRows()) history.push_back(row.Text);
    });
    EXPECT_THAT(history, ElementsAre("", "cats", "cats", "cats"));
}

TEST_F(WebSearchTest, MenuBringsThePanelUp) {
    program().click("cmdFrames(3)").menu("mnuSearch");
    EXPECT_THAT(program().takeLines(), Contains("form FrmMain shown"));
    EXPECT_EQ(program().value("FrameSearch.Left"), std::to_string(FrmMain::panelPlace.Left));
}

}  // namespace
}  // namespace velmora
