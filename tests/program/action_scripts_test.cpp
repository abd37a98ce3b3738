#include <gmock/gmock.h>

#include "tests/program/started_program.h"

namespace velmora {
namespace {

using namespace testing;

constexpr const char* script = "/home/play.vls";

std::string errorBox(const std::string& number, const std::string& description) {
    return "box Active Script Error -Process Data An error occured in the messenger.\\nNumber: " + number +
           "\\nDescription: " + description + "\\nSource: Velmora none ok";
}

class ActionScriptsTest : public StartedProgram {
protected:
    /// What running a script of this content does.
    std::vector<std::string> run(const std::string& content) {
        machine.files.put(script, content);
        program().menu("mnuScriptOpen").takeLines();
        return program().pick(script).takeLines();
    }
    void write(const std::string& text) { program().type("frmWriteScript.txtScript", text); }
};

TEST_F(ActionScriptsTest, OnlyExactDirectivesAct) {
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"", {}},
        {std::string("\0\x1a\xff\r", 4), {}},
        {"say:a\rSAY:a\r Say:a\rShow \rPlay\rShow\rNow Say:a\r\r\n\r", {}},
        {"Say: a \r\nPlay: Wave", {"speak  a   a ", "play  Wave"}},
        {"Say:\rPlay:", {"speak  ", "play "}},
        {"Say:Show\r\n", {"speak Show Show"}},
        {"Say:a\nPlay:b", {"speak a\\nPlay:b a\\nPlay:b"}},
        {"\nSay:a\rSay:b\r\n\rSay:c", {"speak b b", "speak c c"}},
    };
    for (const auto& [content, lines] : cases) EXPECT_EQ(run(content), lines) << content;
}

TEST_F(ActionScriptsTest, ShowBringsAHiddenCharacterOut) {
    program().menu("mnuHide");
    EXPECT_THAT(run("Say:a\rShow\rSay:b"), ElementsAre("speak a a", "show", "speak b b"));
}

TEST_F(ActionScriptsTest, NoMoreLinesThanSixteenBitsCount) {
    std::string lines;
    for (int line = 0; line < 32767; ++line) lines.append("Play:A\r");
    EXPECT_THAT(run(lines), AllOf(SizeIs(32767), Each("play A")));
    EXPECT_THAT(run(lines + "x"), ElementsAre(errorBox("6", "Overflow")));
}

TEST_F(ActionScriptsTest, CancelledDialogRunsTheLastFileOfAnyDialog) {
    program().menu("mnuScriptOpen");
    EXPECT_THAT(program().takeLines(), ElementsAre("dialog open Open File Action Scripts\\0*.vls\\0\\0"));
    EXPECT_THAT(program().pick({}).takeLines(), IsEmpty());
    run("Say:a");
    EXPECT_THAT(program().menu("mnuScriptOpen").pick({}).takeSaid(), ElementsAre("a"));
    machine.files.remove(script);
    program().menu("mnuScriptOpen").takeLines();
    program().pick({});
    EXPECT_THAT(program().takeLines(), ElementsAre(errorBox("53", "File not found")));
}

TEST_F(ActionScriptsTest, EachLineThatFailsIsToldAndTheNextOneRuns) {
    program().run([](Program& inside) { inside.character().Character = {}; });
    EXPECT_THAT(run("Say:a\rShow\rPlay:b"),
                AllOf(SizeIs(2), Each(errorBox("91", "Object variable not set"))));
    program().run([](Program& inside) {
        EXPECT_EQ(inside.actionScripts().failed(Failure(errors::characterRefuses)), After::next);
    });
    EXPECT_THAT(program().takeLines(), IsEmpty());
}

TEST_F(ActionScriptsTest, EditorBuildsAScriptLineByLine) {
    EXPECT_THAT(program().menu("mnuScriptWrite").takeLines(),
                ElementsAre("form frmWriteScript loaded", "form frmWriteScript shown"));
    program().click("frmWriteScript.cmdAdd(0)");
    program().type("frmWriteScript.comAnim", "Wave");  // picks nothing
    program().click("frmWriteScript.cmdAdd(0)").select("frmWriteScript.comAnim", 29);
    program().click("frmWriteScript.cmdAdd(0)").click("frmWriteScript.cmdAdd(1)");
    EXPECT_EQ(program().value("frmWriteScript.txtScript"), "Play:\r\nPlay:\r\nPlay:Wave\r\nSay:Say This ...");
    program().click("frmWriteScript.cmdPreview(0)").click("frmWriteScript.cmdPreview(1)");
    EXPECT_THAT(program().takeLines(), ElementsAre("play Wave", "speak Say This ... Say This ..."));
    EXPECT_THAT(program().click("frmWriteScript.ImgInfo").takeLines(),
                ElementsAre("play Explain", StartsWith("speak Use the Animations combo"),
                            StartsWith("speak Type your message")));
}

TEST_F(ActionScriptsTest, PreviewPerformsTheFileAndLeavesIt) {
    program().menu("mnuScriptWrite");
    write("Show\r\nSay:one");
    program().takeLines();
    EXPECT_THAT(program().click("cmdPreviewScript").takeLines(), ElementsAre("speak one one"));
    EXPECT_EQ(machine.files.read("/home/Temp.vls"), "Show\r\nSay:one");
    machine.files.makeReadOnly("/home/Temp.vls");
    write("Say:two");
    EXPECT_THAT(program().click("cmdPreviewScript").takeLines(),
                ElementsAre(errorBox("75", "Path/File access error"), "speak one one"));
}

TEST_F(ActionScriptsTest, SaveWritesWhateverTheLastDialogNamed) {
    program().menu("mnuScriptWrite");
    write("Say:one");
    program().takeLines();
    const auto save = [this](std::optional<std::string> path) {
        program().click("cmdSaveScript").takeLines();
        return program().pick(std::move(path)).takeLines();
    };
    const int writes = machine.files.writes();
    EXPECT_THAT(save({}), IsEmpty());  // no dialog has named a file yet
    EXPECT_EQ(machine.files.writes(), writes);
    EXPECT_THAT(save("/home/a.vls"), IsEmpty());
    write("Say:two");
    EXPECT_THAT(save({}), IsEmpty());
    EXPECT_EQ(machine.files.read("/home/a.vls"), "Say:two");
    machine.files.failWrite(1);
    write("Say:three");
    EXPECT_THAT(save({}), ElementsAre(StartsWith("box Save Script The script could not be saved.")));
    EXPECT_EQ(machine.files.read("/home/a.vls"), "Say:two");
    EXPECT_EQ(program().value("frmWriteScript.txtScript"), "Say:three");
}

}  // namespace
}  // namespace velmora
