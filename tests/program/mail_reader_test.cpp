#include <gmock/gmock.h>

#include "tests/program/started_mail.h"

namespace velmora {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

using MailReaderTest = StartedMail;

const std::string parts = "------=_1\r\nContent-Transfer-Encoding: 7bit\r\n\r\nHi.\r\n------=_1--\r\n";

TEST_F(MailReaderTest, BodyIsSpokenOnlyIfTheUserWantsIt) {
    machine.setting("/home", "EMail", "Entire", "True");
    machine.pop3(host, {mailFrom("bob", "Lunch?", "1", parts)});
    program().menu("mnuCheckMail");
    EXPECT_THAT(program().takeSaid(),
                ElementsAre("New Message from bob", "Subject Lunch?", "\n\r\nHi.\r\n-"));
    program().menu("mnuCheckMail");
    EXPECT_THAT(program().takeSaid(), IsEmpty());
}

TEST_F(MailReaderTest, ChosenMessageIsReadOnce) {
    machine.pop3(host, {mailFrom("bob", "Lunch?", "1", parts), mailFrom("Eve", "Empty", "2", ""),
                        mailFrom("Eve", "One|Two", "3", "One.\r\n")});
    program().menu("mnuCheckMail");
    program().takeLines();
    program().menu("mnuEMessages");
    EXPECT_THAT(program().takeLines(), ElementsAre("form FrmMain shown"));
    EXPECT_EQ(program().value("FrameMail.Left"), std::to_string(FrmMain::panelPlace.Left));

    const auto enabled = [this] { return program().value("cmdReadMsg.Enabled"); };
    program().select("comMail", 1);
    EXPECT_EQ(enabled(), "False");  // there is nothing to read
    program().select("comMail", 0);
    EXPECT_EQ(enabled(), "True");
    program().click("cmdReadMsg");
    EXPECT_THAT(program().takeLines(),
                ElementsAre("play Read", R"(speak \n\r\nHi.\r\n- \n\r\nHi.\r\n-)", "play ReadReturn"));
    EXPECT_EQ(enabled(), "False");

    program().select("comMail", 2);
    program().select("comMail", 1);
    EXPECT_EQ(enabled(), "True");  // it stays, and reads nothing
    program().click("cmdReadMsg");
    EXPECT_THAT(program().takeLines(), Contains("speak  "));
}

TEST_F(MailReaderTest, HiddenCharacterComesOutToTellAndToRead) {
    machine.pop3(host, {mailFrom("bob", "Lunch?", "1")});
    program().menu("mnuHide");
    program().takeLines();
    program().menu("mnuCheckMail");
    EXPECT_THAT(program().takeLines(), AllOf(Contains("stopall"), Contains("show")));
    program().menu("mnuHide");
    program().takeLines();
    program().select("comMail", 0);
    program().click("cmdReadMsg");
    EXPECT_THAT(program().takeLines(), AllOf(Contains("show"), Not(Contains("stopall"))));
}

TEST_F(MailReaderTest, ChosenTextOutlivesTheNextCheck) {
    auto& mailbox = machine.pop3(host, {mailFrom("a", "one", "1", "First.\r\n"), mailFrom("b", "two", "2")});
    program().menu("mnuCheckMail");
    program().select("comMail", 0);
    mailbox.messages.clear();
    program().menu("mnuCheckMail");
    EXPECT_THAT(subjects(), ElementsAre("two"));
    program().takeLines();
    program().click("cmdReadMsg");
    EXPECT_THAT(program().takeLines(), Contains(R"(speak First.\r\n First.\r\n)"));
}

TEST_F(MailReaderTest, ClickOnTheCharacterStopsTheReading) {
    machine.pop3(host, {mailFrom("bob", "Lunch?", "1")});
    program().menu("mnuCheckMail");
    program().select("comMail", 0);
    program().stage().paused = true;
    program().click("cmdReadMsg");
    program().takeLines();
    program().clickCharacter(1);
    EXPECT_THAT(program().takeLines(), ElementsAre("stopall"));
}

TEST_F(MailReaderTest, SettingsReachTheOptionsWindow) {
    const struct {
        const char* interval;
        const char* entire;
        const char* enabled;
        const char* box;
    } cases[] = {{"0", "True", "False", "1"}, {"10", "TRUE", "True", "0"}, {"", "False", "True", "0"}};
    for (const auto& [interval, entire, enabled, box] : cases) {
        machine.setting("/other", "Options", "Default", "True");
        machine.setting("/other", "EMail", "Pass", Encipher("hush", mainKey));
        machine.setting("/other", "EMail", "Interval", interval);
        machine.setting("/other", "EMail", "Entire", entire);
        SimulatedMachine fresh;
        fresh.files = machine.files;
        auto& other = fresh.start("/other");
        EXPECT_EQ(other.value("FrmMain.TmrMail"), enabled);
        EXPECT_EQ(other.value("FrmOptions.TxtPass"), "hush");
        EXPECT_EQ(other.value("FrmOptions.TxtChkInterval"), interval);
        EXPECT_EQ(other.value("FrmOptions.chkReadEntire"), box);
    }
}

}  // namespace
}  // namespace velmora
