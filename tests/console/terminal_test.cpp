#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

#include "tests/console/terminal_session.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using namespace testing;

constexpr const char* morning = "2026-03-05 09:05:58";

class TerminalTest : public testing::Test {
protected:
    void profile(const std::string& user) {
        folder.write("Velmora.ini", "[Options]\nDefault=True\n[User]\nName=" + user + "\n");
    }

    /// The program of a known user, ready.
    TerminalSession& started() {
        profile("Ann");
        session_.emplace(folder.path()).readAnswer();
        return *session_;
    }

    ScratchFolder folder;

private:
    std::optional<TerminalSession> session_;
};

TEST_F(TerminalTest, KnownUserIsGreetedByTheClockOfTheCommandLine) {
    profile("Ann");
    TerminalSession session(folder.path(), {"--clock", morning, "--seed", "1"});
    EXPECT_THAT(
        session.readAnswer(),
        ElementsAre("form FrmSplash loaded", "form FrmSplash shown", "form FrmOptions loaded",
                    "tray add Velmora", "form FrmMain loaded", "character Merlin", "show", "play Wave",
                    "speak Morning Ann. Morning Ann.", "play RestPose", "form FrmCalender loaded",
                    "play Read", "speak You have no appointments today. You have no appointments today.",
                    "play ReadReturn", "form FrmSplash unloaded", "ready"));
    EXPECT_THAT(session.send("get LblClock"), ElementsAre("value 9:5", "ok"));
    EXPECT_THAT(session.send("skip 3600000"), ElementsAre("ok"));
    EXPECT_THAT(session.send("get lblclock.caption"), ElementsAre("value 10:5", "ok"));
    EXPECT_THAT(
        session.send("menu mnuExit"),
        IsSupersetOf({"speak Are we finished already? Are we finished already?", "hide", "tray delete"}));
    EXPECT_THAT(session.readAnswer(), ElementsAre("bye"));
    EXPECT_EQ(session.exitStatus(), 0);
}

TEST_F(TerminalTest, NewFolderIsSeededAndTheLoginDialogWaits) {
    const std::string fresh = folder.file("new/home");
    TerminalSession session(fresh);
    EXPECT_THAT(session.readAnswer(), ElementsAre("form frmLogin loaded", "form frmLogin shown", "ready"));
    EXPECT_TRUE(fs::exists(fresh + "/characters/Merlin/character.json"));
    EXPECT_TRUE(fs::exists(fresh + "/platform.conf"));
    for (const char* file : {"Jokes.txt", "Tips.txt", "Songs/Kettle Song.txt"})
        EXPECT_EQ(fs::file_size(fresh + "/" + file), fs::file_size(std::string(VELMORA_DATA "/") + file));
    EXPECT_THAT(session.send("click FRMLOGIN.chkdefault"),
                IsSupersetOf({"form frmLogin hidden", "show", "play Greet", "form frmLogin unloaded", "ok"}));
    struct stat status {};
    ASSERT_EQ(stat((fresh + "/Velmora.ini").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(TerminalTest, EmptyFolderIsFilledInItsPlaceAndKeepsItsMode) {
    ASSERT_EQ(chmod(folder.path().c_str(), 0750), 0);
    struct stat before {};
    ASSERT_EQ(stat(folder.path().c_str(), &before), 0);
    TerminalSession session(folder.path() + "/.");
    session.readAnswer();
    session.send("click chkDefault");
    EXPECT_THAT(session.send("click cmdSearch"), Contains(EndsWith(" " + folder.path())));
    struct stat after {};
    ASSERT_EQ(stat(folder.path().c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
    EXPECT_EQ(after.st_mode & 0777, 0750U);
    EXPECT_TRUE(fs::exists(folder.file("characters/Merlin/character.json")));
}

TEST_F(TerminalTest, NothingIsAddedToAFolderThatHoldsAFile) {
    auto& session = started();
    session.finishInput();
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1);
}

TEST_F(TerminalTest, WhatAPersonCouldNotDoIsAnErrorAndChangesNothing) {
    auto& session = started();
    // In the fourth no such name: a TAB alone ends a word.
    for (const char* line :
         {"nonsense", "click", "click NoSuch", "click cmdFrames(1)\tcmdFrames(2)", "click frmLogin.cmdOK",
          "menu mnuSep4", "menu mnuNoSuch", "set LblClock 12", "select LblClock 1", "answer yes", "cancel",
          "close frmLogin", "wait -1", "skip soon", "agent tickle", "get LblClock.NoSuch", "forms all",
          "pointer here", ""}) {
        SCOPED_TRACE(line);
        const auto answer = session.send(line);
        ASSERT_EQ(answer.size(), 1U);
        EXPECT_THAT(answer.front(), StartsWith("error "));
    }
    EXPECT_THAT(session.send("forms"), IsSupersetOf({"row FrmSplash unloaded", "row frmLogin unloaded",
                                                     "row FrmMain loaded", "ok"}));
}

TEST_F(TerminalTest, CommandsAreListedSaidAndPicked) {
    auto& session = started();
    const auto rows = session.send("commands");
    EXPECT_THAT(rows, SizeIs(28 + 2));
    EXPECT_EQ(rows.front(), "row General General [...]general[...] True True -60");
    EXPECT_EQ(rows[5], "row ACO aco [open|show]a c o True False 0");
    EXPECT_THAT(session.send("say Please show  GENERAL menu"),
                ElementsAre("heard Please show  GENERAL menu General 85", "popup FrmMain.mnuGeneral", "ok"));
    EXPECT_THAT(session.send("say mumble"), Contains("heard mumble  -100"));
    EXPECT_THAT(session.send("command ChangeAgent"), ElementsAre("choose", "ok"));
    EXPECT_THAT(session.send("command ChangeAgent -60"), Contains("listen off"));
    EXPECT_THAT(session.send("command\tMy Office\t-59"), Not(Contains("listen off")));
    for (const char* line : {"say", "command", "command My Office", "command\tTip\t1\t2", "commands all"})
        EXPECT_THAT(session.send(line), ElementsAre(StartsWith("error "))) << line;
}

TEST_F(TerminalTest, LinkIsForcedAndADialIsPrinted) {
    auto& session = started();
    EXPECT_THAT(session.send("menu mnuIntConnect"), ElementsAre(testing::MatchesRegex("dial [0-9]+"), "ok"));
    for (const char* state : {"up", "down", "error", "auto"})
        EXPECT_THAT(session.send(std::string("link ") + state), ElementsAre("ok"));
    for (const char* wrong : {"link", "link sideways", "link UP", "link up down"})
        EXPECT_THAT(session.send(wrong), ElementsAre(StartsWith("error"))) << wrong;
}

TEST_F(TerminalTest, NothingIsHeardBeforeThereIsACharacter) {
    TerminalSession session(folder.path());
    session.readAnswer();
    for (const char* line : {"say general", "command General"})
        EXPECT_THAT(session.send(line), ElementsAre(StartsWith("error "))) << line;
    EXPECT_THAT(session.send("commands"), ElementsAre("end", "ok"));
}

TEST_F(TerminalTest, HiddenCharacterCanNotBeClicked) {
    auto& session = started();
    EXPECT_THAT(session.send("agent rightclick"), ElementsAre("popup FrmMain.MnuMain", "ok"));
    EXPECT_THAT(session.send("menu FrmMain.mnuHide"), ElementsAre("hide", "ok"));
    EXPECT_THAT(session.send("agent click"), ElementsAre(StartsWith("error ")));
    EXPECT_THAT(session.send("tray rightclick"), ElementsAre("popup FrmMain.MnuMain", "ok"));
}

TEST_F(TerminalTest, QuitAndTheEndOfInputAreAPowerCut) {
    for (const bool line : {true, false}) {
        ScratchFolder home;
        TerminalSession session(home.path());
        session.readAnswer();
        if (line) {
            EXPECT_THAT(session.send("quit"), ElementsAre("ok"));
        }
        EXPECT_THAT(session.finishInput(), ElementsAre("bye"));
        EXPECT_EQ(session.exitStatus(), 0);
        EXPECT_FALSE(fs::exists(home.file("Users.vlu")));  // the dialog was not told of an end
    }
}

TEST_F(TerminalTest, ScriptFromAPipeIsFollowedToItsLastLineWithoutALineEnd) {
    auto& session = started();
    EXPECT_THAT(session.send("# a remark\nmenu mnuHide\r\nmenu mnuHide"), ElementsAre("hide", "ok"));
    EXPECT_THAT(session.finishInput(), ElementsAre("show", "ok", "bye"));
}

TEST_F(TerminalTest, SecondCopyOfAFolderEndsBeforeItIsReady) {
    profile("Ann");
    TerminalSession first(folder.path());
    first.readAnswer();
    TerminalSession second(folder.path());
    EXPECT_THAT(second.finishInput(), ElementsAre("form FrmSplash loaded", "form FrmSplash shown",
                                                  "form FrmSplash unloaded", "bye"));
    EXPECT_EQ(second.exitStatus(), 0);
}

TEST_F(TerminalTest, AppointmentOfOneRunIsReportedByTheNext) {
    profile("Ann");
    for (const char* due : {"no appointments", "Lunch"}) {
        TerminalSession session(folder.path(), {"--clock", morning});
        EXPECT_THAT(session.readAnswer(),
                    Contains(StartsWith(std::string("speak You have ") + due + " today.")));
        for (const char* line : {"set AppTime 10:30:00", "set txtEvent Lunch", "click cmdAddApp"})
            EXPECT_THAT(session.send(line), ElementsAre("ok"));
        if (std::string_view(due) == "Lunch") {
            EXPECT_THAT(session.send("select lvApps 1"), ElementsAre("popup FrmCalender.mnuAppPopUp", "ok"));
        }
        session.send("menu mnuExit");
        EXPECT_EQ(session.exitStatus(), 0);
    }
}

TEST_F(TerminalTest, AppointmentsOfAMillionLinesAreReadAndWrittenBack) {
    profile("Ann");
    std::string content;
    for (int line = 0; line < 1'000'000; ++line) content += "0123456789@@@\r\n";
    folder.write("Appointments.txt", content);
    TerminalSession session(folder.path(), {"--clock", morning});
    EXPECT_THAT(session.readAnswer(), Contains(EndsWith(R"(\nNumber: 6\nDescription: Overflow none ok)")));
    session.send("close FrmCalender");
    EXPECT_EQ(folder.read("Appointments.txt"), content);
}

TEST_F(TerminalTest, SettingsThatAreNoSettingsCountAsNone) {
    struct Case {
        const char* what;
        std::string content;
    };
    const std::string defaults = "[Options]\nDefault=True\n";
    const Case cases[] = {
        {"NULs", std::string(100000, '\0')},
        {"one endless line", defaults + std::string(100000, 'x') + "\n"},
        {"no text", std::string("\xff\xfe\x00[\n]=\n=", 9)},
    };
    for (const Case& given : cases) {
        SCOPED_TRACE(given.what);
        ScratchFolder home;
        home.write("Velmora.ini", given.content);
        TerminalSession session(home.path());
        EXPECT_THAT(session.readAnswer(), Contains("ready"));
        session.finishInput();
        EXPECT_EQ(home.read("Velmora.ini"), given.content);
    }
    fs::create_directory(folder.file("Velmora.ini"));
    fs::create_directory(folder.file("Users.vlu"));
    TerminalSession session(folder.path());
    EXPECT_THAT(session.readAnswer(), Contains("ready"));
}

TEST_F(TerminalTest, BrokenCharacterGivesTheStartUpBoxAndAProgramThatCanBeLeft) {
    profile("Ann");
    folder.write("platform.conf", "[Character]\nDefault=Broken\n");
    fs::create_directories(folder.file("characters/Broken"));
    for (const char* json : {"{", "[]", "{\"format\":1,\"name\":\"Broken\",\"art\":\"none.svg\"}"}) {
        SCOPED_TRACE(json);
        folder.write("characters/Broken/character.json", json);
        TerminalSession session(folder.path());
        EXPECT_THAT(session.readAnswer(), Contains(StartsWith("box Error during StartUp")));
        EXPECT_THAT(session.send("menu mnuExit"), Contains("ok"));
        EXPECT_THAT(session.readAnswer(), ElementsAre("bye"));
    }
}

TEST_F(TerminalTest, WhatIsNoFolderIsRefusedAndLeftAsItIs) {
    folder.write("file", "mine");
    TerminalSession session(folder.file("file"));
    EXPECT_THAT(session.finishInput(), IsEmpty());
    EXPECT_EQ(session.exitStatus(), 1);
    EXPECT_EQ(folder.read("file"), "mine");
}

TEST_F(TerminalTest, CharacterFolderWithoutACharacterInItIsNotUsed) {
    profile("Ann");
    fs::create_directories(folder.file("characters/Merlin"));
    TerminalSession session(folder.path());
    EXPECT_THAT(session.readAnswer(), Contains("character Merlin"));
}

TEST_F(TerminalTest, NamesInAnyEncodingAreFoundAndPrintedInUtf8) {
    profile("Andr\xe9");
    folder.write("platform.conf", "[Character]\nDefault=M\xe9rlin\n");
    fs::create_directories(folder.file("characters"));
    const std::string shipped = VELMORA_DATA "/characters/Merlin";
    fs::copy(shipped, folder.file("characters/M\xe9rlin"));
    TerminalSession session(folder.path(), {"--clock", morning});
    EXPECT_THAT(session.readAnswer(), Contains("speak Morning Andr\xc3\xa9. Morning Andr\xc3\xa9."));
}

TEST_F(TerminalTest, SmallTalkOfASeededFolderIsPerformed) {
    fs::copy(VELMORA_DATA, folder.path(), fs::copy_options::recursive);
    folder.write("Velmora.ini", "[Options]\nDefault=True\nJokes=On\n[User]\nName=Ann\n");
    TerminalSession session(folder.path(), {"--clock", morning, "--seed", "7"});
    session.readAnswer();
    EXPECT_THAT(session.send("say tell a joke"), IsSupersetOf({"play GetAttention", "play Pleased"}));
    EXPECT_THAT(session.send("command Tip"), IsSupersetOf({"play Announce", "play Pleased"}));
    const auto song = session.send("menu mnuInteractSong");
    EXPECT_THAT(song, Not(Contains(StartsWith("speak An error occured"))));
    EXPECT_THAT(song, Contains(StartsWith("speak \\\\Chr=\"Monotone\"\\\\")).Times(8));
}

TEST(ShippedJokesAndTips, AreManyAllDifferentAndNoneIsEmpty) {
    for (const char* file : {"/Jokes.txt", "/Tips.txt"}) {
        std::ifstream in(std::string(VELMORA_DATA) + file, std::ios::binary);
        std::set<std::string> told;
        for (std::string line; std::getline(in, line);) {
            ASSERT_TRUE(line.ends_with('\r')) << file << ": " << line;
            EXPECT_TRUE(line.size() > 1 && told.insert(line).second) << file << ": " << line;
        }
        EXPECT_THAT(told, SizeIs(Ge(40))) << file;
    }
}

TEST_F(TerminalTest, WindowsThatCanNotBeShownAreOneSentence) {
    TerminalSession session(folder.path(), {"--windows"});
    EXPECT_THAT(session.finishInput(), IsEmpty());
    EXPECT_EQ(session.exitStatus(), 1);
}

TEST_F(TerminalTest, WrongOptionsPrintTheUsageAndExitWithTwo) {
    for (const std::vector<std::string>& options : {std::vector<std::string>{"--nonsense"},
                                                    {"--clock", "soon"},
                                                    {"--seed", "x"},
                                                    {"--seed"},
                                                    {"--address", "1.2.3"}}) {
        TerminalSession session(folder.path(), options);
        EXPECT_THAT(session.finishInput(), IsEmpty());
        EXPECT_EQ(session.exitStatus(), 2);
    }
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

}  // namespace
}  // namespace velmora
