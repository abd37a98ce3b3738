#include <gmock/gmock.h>

#include <cstdlib>
#include <iostream>
#include <memory>

#include "tests/console/terminal_session.h"
#include "tests/hearing/spoken.h"
#include "tests/support/dovecot.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

std::string message(const std::string& subject) {
    return "From: bob@example\r\nSubject: " + subject + "\r\nMessage-ID: <" + subject +
           "@example>\r\n\r\nHello.\r\n";
}

/// The real program, in its terminal, with an account at a real server.
class MailServer : public testing::Test {
protected:
    void SetUp() override {
        try {
            server = std::make_unique<blackbox::Dovecot>();
        } catch (const blackbox::NoDovecot& reason) {
            std::cerr << "NOT TESTED: no mail server here: " << reason.what() << std::endl;
            GTEST_SKIP() << reason.what();
        }
        ::setenv("SSL_CERT_FILE", server->authority().c_str(), 1);
        folder.write("Velmora.ini",
                     "[Options]\r\nDefault=True\r\n[User]\r\nName=Anna\r\n[EMail]\r\nInterval=0\r\nServer=" +
                         server->address() + "\r\nUser=" + blackbox::Dovecot::user + "\r\n");
    }
    void TearDown() override { ::unsetenv("SSL_CERT_FILE"); }

    void start() {
        session = std::make_unique<TerminalSession>(folder.path());
        session->readAnswer();
        session->send(std::string("set FrmOptions.TxtPass ") + blackbox::Dovecot::password);
    }

    /// What the program does from a check on, until it has done this.
    std::vector<std::string> check(const std::string& last, const std::string& line = "menu mnuCheckMail") {
        std::vector<std::string> lines = session->send(line);
        const auto deadline = blackbox::ChildProcess::Clock::now() + std::chrono::seconds(60);
        while (std::find(lines.begin(), lines.end(), last) == lines.end()) {
            if (blackbox::ChildProcess::Clock::now() > deadline) {
                ADD_FAILURE() << "it never did: " << last;
                break;
            }
            const auto more = session->send("wait 10");
            lines.insert(lines.end(), more.begin(), more.end());
        }
        std::erase(lines, "ok");
        return lines;
    }

    /// What the mail panel lists.
    std::vector<std::string> listed() {
        std::vector<std::string> lines = session->send("rows comMail");
        std::erase_if(lines, [](const std::string& line) { return !line.starts_with("row "); });
        return lines;
    }

    ScratchFolder folder;
    std::unique_ptr<blackbox::Dovecot> server;
    std::unique_ptr<TerminalSession> session;
};

TEST_F(MailServer, ASpokenCommandFetchesTheMail) {
    server->deliver(message("Lunch?"));
    start();
    const std::string recording =
        test::temporaryFile("check_mail.wav", test::wavBytes(test::spoken("check mail")));
    EXPECT_THAT(check("speak Subject Lunch? Subject Lunch?", "hear " + recording),
                Contains(StartsWith("heard check mail Check Mail ")));
    EXPECT_THAT(listed(), Contains(testing::HasSubstr("Lunch?")));
}

TEST_F(MailServer, NewMailIsToldASecondCheckStandsStillAndAnEmptyMailboxHalvesTheList) {
    for (const char* subject : {"one", "two", "three", "four"}) server->deliver(message(subject));
    start();
    const auto told = check("speak Subject four Subject four");
    EXPECT_THAT(told, Contains("speak New Message from bob@example New Message from bob@example").Times(4));
    EXPECT_EQ(listed().size(), 4U);

    session->send("menu mnuCheckMail");
    EXPECT_THAT(session->send("wait 300"), ElementsAre("ok"));
    EXPECT_EQ(listed().size(), 4U);

    server->emptyMailbox();
    EXPECT_THAT(check("think There are no new messages."),
                ElementsAre("play Sad", "think There are no new messages."));
    session->send("wait 100");
    EXPECT_THAT(listed(),
                ElementsAre(StartsWith("row 0 <two@example> two"), StartsWith("row 1 <four@example> four")));
}

TEST_F(MailServer, WrongPasswordIsShownAsTheServerSaysIt) {
    start();
    session->send("set FrmOptions.TxtPass wrong");
    EXPECT_THAT(check(R"(box POP3 Error POP3 Error: -ERR [AUTH] Authentication failed.\r\n exclamation ok)"),
                ElementsAre(StartsWith("box POP3 Error ")));
}

TEST_F(MailServer, EncryptedMailboxIsReadLikeAnyOther) {
    server->deliver(message("one"));
    for (const char* way : {"tls:995", "starttls"}) {
        folder.write("platform.conf", "[Mail]\n" + server->address() + "=" + way + "\n");
        start();
        EXPECT_THAT(check("speak Subject one Subject one"), Contains(StartsWith("speak New Message"))) << way;
    }
}

TEST_F(MailServer, ServerThatNobodyVouchesForGetsNoPassword) {
    server->deliver(message("one"));
    folder.write("platform.conf", "[Mail]\n" + server->address() + "=tls:995\n");
    ::unsetenv("SSL_CERT_FILE");
    start();
    session->send("menu mnuCheckMail");
    EXPECT_THAT(session->send("wait 300"), ElementsAre("ok"));
    EXPECT_THAT(listed(), IsEmpty());
}

}  // namespace
}  // namespace velmora
