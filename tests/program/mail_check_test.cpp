#include <gmock/gmock.h>

#include "tests/program/started_mail.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using namespace testing;

using MailCheckTest = StartedMail;

constexpr const char* refusal = "box POP3 Error POP3 Error: ";

TEST_F(MailCheckTest, FetchesTheMailboxInOrderAndTellsOfIt) {
    auto& mailbox =
        machine.pop3(host, {mailFrom("bob@example", "Lunch?", "1"), mailFrom("Eve", "Dinner?", "2")});
    program().menu("mnuCheckMail");
    EXPECT_THAT(mailbox.takeCommands(),
                ElementsAre("USER ann", "PASS secret", "STAT", "RETR 1", "RETR 2", "QUIT"));
    EXPECT_THAT(program().takeLines(),
                ElementsAre("stopall", "play Read", said("New Message from bob@example"),
                            said("Subject Lunch?"), "play ReadReturn", "stopall", "play Read",
                            said("New Message from Eve"), said("Subject Dinner?"), "play ReadReturn"));
    EXPECT_THAT(subjects(), ElementsAre("Lunch?", "Dinner?"));
    EXPECT_TRUE(mailbox.line().closed());
}

TEST_F(MailCheckTest, SecondCheckOfAnUnchangedMailboxStandsStill) {
    auto& mailbox = machine.pop3(host, {mailFrom("bob", "Lunch?", "1")});
    program().menu("mnuCheckMail");
    mailbox.takeCommands();
    program().takeLines();
    program().menu("mnuCheckMail");
    EXPECT_THAT(mailbox.takeCommands(), ElementsAre("USER ann", "PASS secret", "STAT", "RETR 1", "RETR 3"));
    EXPECT_THAT(program().takeLines(), IsEmpty());
    EXPECT_FALSE(mailbox.line().closed());

    // The error line counts as the first line of the next message, and the real one stands in its headers.
    mailbox.messages = {mailFrom("Eve", "Dinner?", "2"), "", "", "", mailFrom("Eve", "Tea?", "3")};
    program().menu("mnuCheckMail");
    EXPECT_THAT(mailbox.takeCommands(),
                ElementsAre("USER ann", "PASS secret", "STAT", "RETR 1", "RETR 5", "QUIT"));
    EXPECT_THAT(subjects(), ElementsAre("Lunch?", "Dinner?", "Tea?"));
    program().run([](Program& inside) {
        EXPECT_THAT(inside.mailCheck().MailMessages.Item(2).Headers, StartsWith("+OK "));
        EXPECT_THAT(inside.mailCheck().MailMessages.Item(3).Headers, StartsWith("From: "));
    });
}

TEST_F(MailCheckTest, SessionWhoseCountTheFetchedNumberMeetsEndsAfterMessageOne) {
    auto& mailbox = machine.pop3(host, {mailFrom("bob", "Lunch?", "1")});
    program().menu("mnuCheckMail");
    mailbox.messages = {mailFrom("Eve", "Dinner?", "2"), mailFrom("bob", "Supper?", "3")};
    mailbox.takeCommands();
    program().takeLines();
    program().menu("mnuCheckMail");
    EXPECT_THAT(mailbox.takeCommands(), ElementsAre("USER ann", "PASS secret", "STAT", "RETR 1", "QUIT"));
    EXPECT_THAT(program().takeSaid(), ElementsAre("New Message from Eve", "Subject Dinner?"));
    EXPECT_THAT(subjects(), ElementsAre("Lunch?", "Dinner?"));
}

TEST_F(MailCheckTest, EmptyMailboxLeavesEverySecondOfTheMessagesBefore) {
    auto& mailbox = machine.pop3(host, {mailFrom("a", "one", "1"), mailFrom("b", "two", "2"),
                                        mailFrom("c", "three", "3"), mailFrom("d", "four", "4")});
    program().menu("mnuCheckMail");
    mailbox.messages.clear();
    mailbox.takeCommands();
    program().takeLines();
    program().menu("mnuCheckMail");
    EXPECT_THAT(mailbox.takeCommands(), ElementsAre("USER ann", "PASS secret", "STAT", "QUIT"));
    EXPECT_THAT(program().takeLines(), ElementsAre("play Sad", "think There are no new messages."));
    EXPECT_THAT(subjects(), ElementsAre("two", "four"));
}

TEST_F(MailCheckTest, MessagesOfOneKeyCountOnce) {
    machine.pop3(host, {mailFrom("a", "first", "1"), mailFrom("b", "again", "1"), mailFrom("c", "no id", ""),
                        mailFrom("d", "nor here", ""), "no empty line\r\n"});
    EXPECT_THAT(program().menu("mnuCheckMail").takeSaid(),
                ElementsAre("New Message from a", "Subject first", "New Message from c", "Subject no id"));
    EXPECT_THAT(subjects(), ElementsAre("first", "no id"));
}

TEST_F(MailCheckTest, MessageWithoutAnEmptyLineStandsWithoutFields) {
    machine.pop3(host, {"From: bob\r\nSubject: lost\r\n"});
    EXPECT_THAT(program().menu("mnuCheckMail").takeSaid(), ElementsAre("New Message from ", "Subject "));
    EXPECT_THAT(subjects(), ElementsAre(""));
}

TEST_F(MailCheckTest, RefusalIsShownAsItCameAndEndsTheSession) {
    auto& mailbox = machine.pop3(host);
    const struct {
        const char* command;
        std::string answer;
        std::string shown;
    } cases[] = {
        {"", "-ERR go away\r\n", "-ERR go away\\r\\n"},
        {"USER ann", " +OK\r\n", " +OK\\r\\n"},
        {"PASS secret", "-ERR\r\n", "-ERR\\r\\n"},
        {"STAT", std::string("\0\xe9", 2), "\\0\xc3\xa9"},
        {"QUIT", "-", "-"},
    };
    for (const auto& [command, answer, shown] : cases) {
        mailbox.answers = {{command, answer}};
        program().menu("mnuCheckMail");
        EXPECT_THAT(program().takeLines(), Contains(refusal + shown + " exclamation ok")) << command;
        EXPECT_TRUE(mailbox.line().closed()) << command;
    }
}

TEST_F(MailCheckTest, CountIsTheNumberUpToTheBlank) {
    auto& mailbox = machine.pop3(host, {mailFrom("bob", "Lunch?", "1")});
    const auto commandsAfter = [&](const char* answer) {
        mailbox.answers = {{"STAT", answer}};
        program().menu("mnuCheckMail");
        return mailbox.takeCommands();
    };
    for (const char* answer : {"+OK 1 120\r\n", "+ab-1 1\r\n", "+OKX1 \r\n", "+OK 0.6 x"})
        EXPECT_THAT(commandsAfter(answer), Contains("RETR 1")) << answer;
    for (const char* answer :
         {"+OK 99999 1\r\n", "+OK 32768 1\r\n", "+OK -2 1\r\n", "+OK 1\r\n", "+OK  1 120\r\n", "+", "+OK",
          "+OK one 120\r\n", "+OK 1e99999999 1", "+OK \xff 1"})
        EXPECT_THAT(commandsAfter(answer), Contains("QUIT")) << answer;
}

TEST_F(MailCheckTest, EachEventOutsideAMessageIsAStep) {
    auto& mailbox = machine.pop3(host);
    mailbox.silentAt = {"", "USER ann", "PASS secret", "STAT"};
    program().menu("mnuCheckMail");
    mailbox.line().send("+OK hel+lo", 7);  // the second event begins with "+" too
    machine.settle();
    EXPECT_THAT(mailbox.takeCommands(), ElementsAre("USER ann", "PASS secret"));
    mailbox.line().send("+OK\r\n+OK\r\n+OK\r\n");  // and these are one
    machine.settle();
    EXPECT_THAT(mailbox.takeCommands(), ElementsAre("STAT"));
    mailbox.line().send("+OK 1 2\r\n", 5);
    machine.settle();
    EXPECT_THAT(program().takeLines(), Contains(std::string(refusal) + " 2\\r\\n exclamation ok"));
}

TEST_F(MailCheckTest, AnswersMayBeAPlusAloneAndMessagesComeByteByByte) {
    const std::string body("\0\x80.\r\n..\r\n", 9);
    auto& mailbox = machine.pop3(host);
    mailbox.answers = {
        {"", "+"}, {"USER ann", "+"}, {"PASS secret", "+"}, {"STAT", "+OK 1 9"}, {"QUIT", "+"}};
    mailbox.silentAt = {"RETR 1"};
    program().menu("mnuCheckMail");
    mailbox.line().send("+OK\r\n" + mailFrom("bob", "Lunch?", "1", body) + ".\r\n", 1);
    machine.settle();
    EXPECT_THAT(subjects(), ElementsAre("Lunch?"));
    program().run(
        [&](Program& inside) { EXPECT_EQ(inside.mailCheck().MailMessages.Item(1).MessageBody, body); });
}

TEST_F(MailCheckTest, SilentLostAndRefusedConnectionsAreSilentAndTheNextCheckStartsOver) {
    auto& mailbox = machine.pop3(host, {mailFrom("bob", "Lunch?", "1")});
    for (auto* fault : {&mailbox.silentAt, &mailbox.closesAt, &mailbox.resetsAt}) {
        for (const char* command : {"", "USER ann", "PASS secret", "STAT"}) {
            *fault = {command};
            program().menu("mnuCheckMail");
            EXPECT_THAT(after(10min).takeLines(), IsEmpty()) << command;
        }
        fault->clear();
    }
    machine.network.withdraw(host, SimulatedMailbox::port);
    program().menu("mnuCheckMail").type("FrmOptions.TxtServer", "nowhere.example").menu("mnuCheckMail");
    EXPECT_THAT(program().takeLines(), IsEmpty());

    machine.pop3("new.example", {mailFrom("bob", "Lunch?", "1")});
    program().type("FrmOptions.TxtServer", "new.example");  // no save is needed
    EXPECT_THAT(program().menu("mnuCheckMail").takeSaid(), Contains("Subject Lunch?"));
}

TEST_F(MailCheckTest, MessageThatBrokeOffGoesOnInTheNextSession) {
    auto& mailbox = machine.pop3(host, {mailFrom("bob", "Lunch?", "1")});
    mailbox.answers = {{"RETR 1", "+OK\r\nSubject: Half\r\n"}};
    program().menu("mnuCheckMail");
    mailbox.line().reset();
    mailbox.answers.clear();
    program().menu("mnuCheckMail");
    mailbox.line().send("+OK\r\n\r\n.\r\n");
    EXPECT_THAT(mailbox.takeCommands(), Contains("RETR 3"));
    program().run([](Program& inside) {
        EXPECT_EQ(inside.mailCheck().MailMessages.Item(1).Headers.substr(0, 19), "Subject: Half\r\n+OK ");
        EXPECT_EQ(inside.mailCheck().MailMessages.Item(1).Subject, "Lunch?");
    });
}

TEST_F(MailCheckTest, DataWithoutMemoryForItEndsTheSession) {
    auto& mailbox = machine.pop3(host, {mailFrom("bob", "Lunch?", "1", std::string(100'000, 'x'))});
    machine.network.memory = 50'000;
    program().menu("mnuCheckMail");
    EXPECT_TRUE(mailbox.line().closed());
    EXPECT_THAT(program().takeLines(), IsEmpty());
    EXPECT_THAT(subjects(), IsEmpty());
}

TEST_F(MailCheckTest, ServerThatNeverEndsAMessageIsOnlyListenedTo) {
    auto& mailbox = machine.pop3(host);
    mailbox.answers = {{"STAT", "+OK 1 1\r\n"}, {"RETR 1", "+OK\r\n"}};
    program().menu("mnuCheckMail");
    const std::string block(1 << 20, '.');
    for (int i = 0; i < 16; ++i) {
        mailbox.line().send(block, 1 << 16);
        machine.settle();
    }
    program().run(
        [&](Program& inside) { EXPECT_EQ(inside.mailCheck().MailBuffer.size(), 5 + 16 * block.size()); });
    EXPECT_THAT(program().takeLines(), IsEmpty());
}

TEST_F(MailCheckTest, WithoutAServerTheMenuSaysSoAndTheCommandIsSilent) {
    machine.setting("/home", "EMail", "Server", "");
    EXPECT_THAT(program().command("Check Mail").takeLines(), IsEmpty());
    program().menu("mnuCheckMail");
    EXPECT_THAT(
        program().takeLines(),
        ElementsAre("play Sad", said("I was unable to find your e-mail settings."), "form FrmMain shown"));
}

TEST_F(MailCheckTest, TimerChecksEachIntervalAndWaitsForTheLink) {
    auto& mailbox = machine.pop3(host);
    machine.setting("/home", "EMail", "Interval", "3");
    program();
    machine.advance(2min);
    EXPECT_THAT(mailbox.takeCommands(), IsEmpty());
    machine.advance(1min);
    EXPECT_THAT(mailbox.takeCommands(), Contains("QUIT"));
    machine.link.found->clear();
    machine.advance(10min);
    EXPECT_THAT(mailbox.takeCommands(), IsEmpty());
    machine.link.found->push_back(LinkStatus::connected);
    machine.advance(1min);
    EXPECT_THAT(mailbox.takeCommands(), Contains("QUIT"));
    EXPECT_THAT(program().takeLines(), Not(Contains("failed")));
}

TEST_F(MailCheckTest, IntervalOfOneMinuteChecksOnEveryTickAndOfZeroNever) {
    auto& mailbox = machine.pop3(host);
    machine.setting("/home", "EMail", "Interval", "1");
    program();
    machine.advance(2min);
    EXPECT_THAT(mailbox.takeCommands(), ElementsAre("USER ann", "PASS secret", "STAT", "QUIT", "USER ann",
                                                    "PASS secret", "STAT", "QUIT"));
    machine.setting("/home", "EMail", "Interval", "0");
    program().run([](Program& inside) { inside.mailSettings().ReadMailSettings(); });
    machine.advance(1h);
    EXPECT_THAT(mailbox.takeCommands(), IsEmpty());
}

TEST_F(MailCheckTest, TicksAreCountedInSixteenBits) {
    machine.setting("/home", "EMail", "Interval", "");  // the timer runs, and the interval stays 0
    program().run([](Program& inside) {
        auto& check = inside.mailCheck();
        check.MailTickCount = 32766;
        check.TmrMail_Timer();
        EXPECT_THROW(check.TmrMail_Timer(), Failure);
        EXPECT_EQ(check.MailTickCount, 32767);
    });
}

TEST_F(MailCheckTest, FirstCheckMarksTheFavouritesThatHaveChangedInTheLastDays) {
    std::string list;
    for (int row = 0; row < 10; ++row)
        list.append("Site\nhttp://s").append(std::to_string(row)).append(".example/\n");
    machine.files.put("/home/favourites.txt", list);
    const std::map<std::string, std::string> changed{
        {"http://s0.example/", "Thu, 05 Mar 2026 08:00:00 GMT"},
        {"http://s1.example/", "Sat, 28 Feb 2026 08:00:00 GMT"},
        {"http://s2.example/", "Fri, 27 Feb 2026 08:00:00 GMT"},
        {"http://s3.example/", "yesterday"},
        {"http://s4.example/", ""},
        {"http://s6.example/", "Fri, 06 Mar 2026 08:00:00 GMT"},
    };
    for (const auto& [url, date] : changed) machine.web.serve(url, {.headers = {{"Last-Modified", date}}});
    auto& mailbox = machine.pop3(host);
    program().menu("mnuCheckMail").menu("mnuCheckMail");
    EXPECT_EQ(machine.web.takeRequests().size(), 10U);  // once in the life of the program, reachable or not
    std::string marks;
    for (int row = 0; row < 10; ++row)
        marks += program().value("mnuCustom(" + std::to_string(row) + ").Checked") == "True" ? 'x' : '.';
    EXPECT_EQ(marks, "xx....x...");
    EXPECT_EQ(mailbox.takeCommands().size(), 8U);
}

}  // namespace
}  // namespace velmora
