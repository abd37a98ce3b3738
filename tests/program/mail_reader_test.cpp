#include <gmock/gmock.h>

#include "tests/program/started_mail.h"

namespace velmora {
namespace {

using namespace testing;

using MailReaderTest = StartedMail;

const std::string parts = "------=_1\r\nContent-Transfer-Encoding: 7bit\r\n\r\nHi.\r\n------=_1--\r\n";

TEST_F(MailReaderTest, BodyIsSpokenOnlyIfTheUserWantsIt) {
    machine.setting("/home", "EMail", "Entire", "True");
    machine.pop3(host, {mailFrom("bob", "Lunch?", "1", parts)});
    EXPECT_THAT(program().menu("mnuCheckMail").takeSaid(),
                ElementsAre("New Message from bob", "Subject Lunch?", "\n\r\nHi.\r\n-"));
    EXPECT_THAT(program().menu("mnuCheckMail").takeSaid(), IsEmpty());
}

TEST_F(MailReaderTest, ChosenMessageIsReadOnce) {
    machine.pop3(host, {mailFrom("bob", "Lunch?", "1", parts), mailFrom("Eve", "Empty", "2", ""),
                        mailFrom("Eve", "One|Two", "3", "One.\r\n")});
    program().menu("mnuCheckMail").takeLines();
    program().menu("mnuEMessages");
    EXPECT_THAT(program().takeLines(), ElementsAre("form FrmMain shown"));
    EXPECT_EQ(program().value("FrameMail.Left"), std::to_string(FrmMain::panelPlace.Left));

    const auto enabled = [this] { return program().value("cmdReadMsg.Enabled"); };
    program().select("comMail", 1);
    EXPECT_EQ(enabled(), "False");  // there is nothing to read
    program().select("comMail", 0);
    EXPECT_EQ(enabled(), "True");
    EXPECT_THAT(program().click("cmdReadMsg").takeLines(),
                ElementsAre("play Read", R"(speak \n\r\nHi.\r\n- \n\r\nHi.\r\n-)", "play ReadReturn"));
    EXPECT_EQ(enabled(), "False");

    program().select("comMail", 2).select("comMail", 1);
    EXPECT_EQ(enabled(), "True");  // it stays, and reads nothing
    EXPECT_THAT(program().click("cmdReadMsg").takeLines(), Contains("speak  "));
}

TEST_F(MailReaderTest, HiddenCharacterComesOutToTellAndToRead) {
    machine.pop3(host, {mailFrom("bob", "Lunch?", "1")});
    program().menu("mnuHide").takeLines();
    program().menu("mnuCheckMail");
    EXPECT_THAT(program().takeLines(), AllOf(Contains("stopall"), Contains("show")));
    program().menu("mnuHide").takeLines();
    program().select("comMail", 0).click("cmdReadMsg");
    EXPECT_THAT(program().takeLines(), AllOf(Contains("show"), Not(Contains("stopall"))));
}

TEST_F(MailReaderTest, ChosenTextOutlivesTheNextCheck) {
    auto& mailbox = machine.pop3(host, {mailFrom("a", "one", "1", "First.\r\n"), mailFrom("b", "two", "2")});
    program().menu("mnuCheckMail").select("comMail", 0);
    mailbox.messages.clear();
    program().menu("mnuCheckMail");
    EXPECT_THAT(subjects(), ElementsAre("two"));
    program().takeLines();
    EXPECT_THAT(program().click("cmdReadMsg").takeLines(), Contains(R"(speak First.\r\n First.\r\n)"));
}

}  // namespace
}  // namespace velmora
