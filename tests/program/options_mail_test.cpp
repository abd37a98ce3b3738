#include <gmock/gmock.h>

#include "core/crypter.h"
#include "tests/program/started_program.h"

namespace velmora {
namespace {

using testing::ElementsAre;

/// The pages of the options window with the mail account and the jokes.
class MailAndJokes : public StartedProgram {
protected:
    std::string stored(const std::string& section, const std::string& key) {
        return IniSettingsFile(machine.files).read(section, key, "(none)", "/home/Velmora.ini");
    }
    void open(const std::string& entry) { program().menu(entry).takeLines(); }
    std::vector<std::string> save() { return program().click("CmdSave").takeLines(); }
    bool readEntire() {
        bool entire = false;
        program().run([&](Program& inside) { entire = inside.main().ReadEntire; });
        return entire;
    }
    int mailInterval() {
        int interval = 0;
        program().run([&](Program& inside) { interval = inside.main().MailInterval; });
        return interval;
    }

    const std::string on = "speak Mail Checking is on Mail Checking is on";
    const std::string off = "box Velmora Mail Checking OFF none ok";
    const std::string saved = "speak Your jokes have been saved. Your jokes have been saved.";
};

std::string failed(const std::string& text) {
    return "box Error During Save " + text + " exclamation ok";
}

TEST_F(MailAndJokes, AccountIsReadAtTheStartAndAsOftenAsTheWindowLoads) {
    machine.setting("/home", "EMail", "Server", "mail.example");
    machine.setting("/home", "EMail", "User", "ann");
    machine.setting("/home", "EMail", "Pass", Encipher("secret", mainKey));
    machine.setting("/home", "EMail", "Interval", "12");
    machine.setting("/home", "EMail", "Entire", "True");
    program();
    for (int load = 0; load < 2; ++load) {
        EXPECT_EQ(program().value("TxtServer"), "mail.example");
        EXPECT_EQ(program().value("TxtUser"), "ann");
        EXPECT_EQ(program().value("TxtPass"), "secret");
        EXPECT_EQ(program().value("TxtChkInterval"), "12");
        EXPECT_EQ(program().value("chkReadEntire"), "1");
        EXPECT_EQ(program().value("TmrMail"), "True");
        EXPECT_EQ(mailInterval(), 12);
        EXPECT_TRUE(readEntire());
        program().run([](Program& inside) {
            inside.options().Unload();
            inside.options().Load();
        });
    }
}

TEST_F(MailAndJokes, ReadingTheAccountNeverTakesTheMarkFromTheBox) {
    struct Case {
        std::string entire;
        bool before, after;
    };
    open("mnuOptionsMail");
    for (const auto& [entire, before, after] :
         {Case{"True", false, true}, Case{"False", true, false}, Case{"", true, false},
          Case{"TRUE", true, true}, Case{"TRUE", false, false}}) {
        machine.setting("/home", "EMail", "Entire", entire);
        program().run([was = before](Program& inside) {
            inside.options().chkReadEntire.Value = 1;
            inside.main().ReadEntire = was;
            inside.mailSettings().ReadMailSettings();
        });
        EXPECT_EQ(readEntire(), after) << entire;
        EXPECT_EQ(program().value("chkReadEntire"), "1") << entire;
    }
}

TEST_F(MailAndJokes, TurningReadingOnTellsAtOnceAndOutlastsTheWindow) {
    open("mnuOptionsMail");
    program().click("chkReadEntire");
    EXPECT_TRUE(readEntire());
    EXPECT_EQ(stored("EMail", "Entire"), "(none)");
    save();
    EXPECT_EQ(stored("EMail", "Entire"), "True");
    program().click("chkReadEntire");
    EXPECT_FALSE(readEntire());
    save();
    EXPECT_EQ(stored("EMail", "Entire"), "False");
}

TEST_F(MailAndJokes, IntervalDecidesWhetherMailIsCheckedAndABadOneLeavesTheOneBefore) {
    machine.setting("/home", "EMail", "Interval", "0");
    open("mnuOptionsMail");
    EXPECT_EQ(program().value("TmrMail"), "False");
    struct Case {
        std::string text;
        std::vector<std::string> lines;
        std::string timer;
        int interval;
    };
    for (const auto& [text, lines, timer, interval] :
         {Case{"abc", {failed("13\\nType mismatch"), off}, "False", 0}, Case{"7", {on}, "True", 7},
          Case{"7", {on}, "True", 7}, Case{"", {failed("13\\nType mismatch"), on}, "True", 7},
          Case{"40000", {failed("6\\nOverflow"), on}, "True", 7}, Case{"0", {off}, "False", 0},
          Case{"0", {off}, "False", 0}, Case{"0.2", {off}, "False", 0}, Case{"-1", {on}, "True", -1}}) {
        program().type("TxtChkInterval", text);
        EXPECT_EQ(save(), lines) << text;
        EXPECT_EQ(stored("EMail", "Interval"), text);
        EXPECT_EQ(program().value("TmrMail"), timer) << text;
        EXPECT_EQ(mailInterval(), interval) << text;
    }
}

TEST_F(MailAndJokes, AccountIsStoredWithItsPasswordEncipheredAndLostSilentlyIfTheFileRefuses) {
    open("mnuOptionsMail");
    program().type("TxtServer", "mail.example").type("TxtUser", "ann").type("TxtPass", "secret");
    program().type("TxtChkInterval", "5");
    EXPECT_THAT(save(), ElementsAre(on));
    EXPECT_EQ(stored("EMail", "Server"), "mail.example");
    EXPECT_EQ(stored("EMail", "User"), "ann");
    EXPECT_EQ(Decipher(stored("EMail", "Pass"), mainKey), "secret");
    const std::string once = machine.files.read("/home/Velmora.ini");

    machine.files.makeReadOnly("/home/Velmora.ini");
    program().type("TxtServer", "other.example").type("TxtChkInterval", "6");
    EXPECT_THAT(save(), ElementsAre(on));
    EXPECT_EQ(machine.files.read("/home/Velmora.ini"), once);
    EXPECT_EQ(mailInterval(), 6);
}

TEST_F(MailAndJokes, WithoutACharacterAFailedReportIsToldAndTheSaveIsDone) {
    machine.character.clear();
    open("mnuOptions");
    const std::string noObject = failed("91\\nObject variable not set");
    EXPECT_THAT(save(), ElementsAre(noObject, noObject, noObject, noObject));
    EXPECT_TRUE(machine.files.exists("/home/Office.txt"));
}

TEST_F(MailAndJokes, ListThatCannotBeWrittenIsToldAndTheRestGoesOn) {
    machine.files.put("/home/Office.txt", "Old\n");
    machine.files.makeReadOnly("/home/Office.txt");
    open("mnuOptions");
    program().type("txtProgrammeName", "New");
    EXPECT_EQ(save().front(), failed("75\\nPath/File access error"));
    EXPECT_EQ(machine.files.read("/home/Office.txt"), "Old\n");
    EXPECT_EQ(program().value("mnuOffice(0)"), "New");
}

TEST_F(MailAndJokes, JokesAreSavedByteForByteWithTheirTimer) {
    const std::string text = "One\r\n\r\nTw\xff\t\\Chr=\"Whisper\"\\o\nlast";
    machine.files.put("/home/Jokes.txt", text);
    machine.setting("/home", "Options", "Jokes", "On");
    open("mnuJokesEdit");
    EXPECT_EQ(program().value("TimerJoke"), "True");
    EXPECT_EQ(program().value("chkJoke"), "0");  // the timer was not yet on when the window was loaded
    EXPECT_THAT(save(), ElementsAre("play Congratulate_2", saved, "play Pleased"));
    EXPECT_EQ(machine.files.read("/home/Jokes.txt"), text);
    EXPECT_EQ(stored("Options", "Jokes"), "Off");
    EXPECT_EQ(program().value("TimerJoke"), "False");

    program().click("chkJoke").type("rtbJokes", "New\r\n");
    save();
    EXPECT_EQ(machine.files.read("/home/Jokes.txt"), "New\r\n");
    EXPECT_EQ(stored("Options", "Jokes"), "On");
    EXPECT_EQ(program().value("TimerJoke"), "True");
    program().close("FrmOptions");
    open("mnuJokesEdit");
    EXPECT_EQ(program().value("chkJoke"), "1");
    EXPECT_EQ(program().value("rtbJokes"), "New\r\n");
}

TEST_F(MailAndJokes, JokesThatCannotBeSavedAreToldAndTheRestGoesOn) {
    const auto told =
        ElementsAre(failed("75\\nPath/File access error"), "play Congratulate_2", saved, "play Pleased");
    open("mnuJokesEdit");  // there is no file: nothing was loaded that could be saved
    program().click("chkJoke").type("rtbJokes", "New");
    EXPECT_THAT(save(), told);
    EXPECT_FALSE(machine.files.exists("/home/Jokes.txt"));
    EXPECT_EQ(stored("Options", "Jokes"), "On");

    machine.files.put("/home/Jokes.txt", "Old");
    program().close("FrmOptions");
    open("mnuJokesEdit");
    machine.files.makeReadOnly("/home/Jokes.txt");
    program().type("rtbJokes", "New");
    EXPECT_THAT(save(), told);
    EXPECT_EQ(machine.files.read("/home/Jokes.txt"), "Old");
}

}  // namespace
}  // namespace velmora
