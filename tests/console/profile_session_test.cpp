#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <optional>

#include "tests/console/terminal_session.h"
#include "tests/support/http_server.h"

namespace velmora {
namespace {

using namespace testing;

/// The real program before its first run, and a directory service on this machine.
class ProfileSession : public testing::Test {
protected:
    ProfileSession() {
        server.page("/messenger/CreateProfile.asp", [this](const HttpConnection& client) {
            const std::size_t number = asked++;
            number < replies.size() ? replies[number](client) : client.hold();
        });
    }

    TerminalSession& session() {
        if (!session_) {
            folder.write("Velmora.ini", "[Options]\nDefault=True\n");
            folder.write("platform.conf", "[Directory]\nEndpoint=" + server.url("/") + "\n");
            session_.emplace(folder.path());
            session_->readAnswer();
            session_->send("link up");
            for (const char* field : {"txtFName", "txtLName", "txtEMail", "txtNickName"})
                session_->send("set " + std::string(field) + " Ann");
        }
        return *session_;
    }
    /// Presses the button, and lets time pass until a line begins like this; gives all lines.
    std::vector<std::string> finish(const std::string& awaited) {
        auto lines = session().send("click cmdFinish");
        const auto seen = [&](const std::string& line) { return line.starts_with(awaited); };
        for (int waits = 0; waits < 2000 && std::none_of(lines.begin(), lines.end(), seen); ++waits) {
            const auto more = session().send("wait 20");
            lines.insert(lines.end(), more.begin(), more.end());
        }
        return lines;
    }
    std::string value(const std::string& address) { return session().send("get " + address).front(); }

    /// What the requests get, one each; one that finds nothing hangs. Set before the first.
    std::vector<HttpServer::Page> replies;
    std::atomic<std::size_t> asked{0};
    HttpServer server;
    ScratchFolder folder;

private:
    std::optional<TerminalSession> session_;
};

TEST_F(ProfileSession, WhateverComesInPlaceOfANumberIsAnsweredByAnotherPress) {
    static constexpr std::string_view cut = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc";
    replies = {[](const HttpConnection& client) { client.send(cut); },
               [](const HttpConnection& client) {
                   client.send(cut);
                   client.reset();
               },
               [](const HttpConnection&) {},
               [](const HttpConnection& client) {
                   client.send("HTTP/1.1 200 OK\r\n\r\n");
                   const std::string much(1'000'000, 'x');
                   for (int i = 0; i < 100 && client.send(much); ++i) {
                   }
               },
               [](const HttpConnection& client) { client.answer(""); },
               // A page of an error is a number like any other, on purpose.
               [](const HttpConnection& client) { client.answer("<h1>\xff</h1>", {}, "500 Oh"); }};
    session().send("set txtLName O Hara&x=1");
    for (int failure = 0; failure < 4; ++failure) {
        EXPECT_THAT(finish("box"), Contains(StartsWith("box Error! 357"))) << failure;
        EXPECT_EQ(value("txtFName") + value("cmdFinish"), "value Annvalue Finish");
    }
    session().send("click cmdFinish");
    for (int waits = 0; waits < 2000 && value("Status") != "value Complete"; ++waits)
        session().send("wait 20");
    EXPECT_EQ(value("cmdFinish"), "value Finish");
    finish("speak I have created");
    EXPECT_EQ(value("txtUID"), "value <h1>\xc3\xbf</h1>");
    EXPECT_THAT(server.requests(), testing::Each(StartsWith(
                                       "GET /messenger/CreateProfile.asp?FName=Ann&Lname=O%20Hara&x=1&EMail="
                                       "Ann&NickName=Ann HTTP/1.")));
}

TEST_F(ProfileSession, WizardIsClosedAndTheProgramEndsWhileTheServiceIsSilent) {
    EXPECT_THAT(session().send("click cmdFinish"), ElementsAre("play Processing", "ok"));
    EXPECT_THAT(session().send("close frmProfile"), ElementsAre("form frmProfile unloaded", "ok"));
    EXPECT_THAT(session().send("menu mnuExit"), Contains("form FrmMain unloaded"));
    EXPECT_THAT(session().readAnswer(), ElementsAre("bye"));
    EXPECT_EQ(session().exitStatus(), 0);
}

}  // namespace
}  // namespace velmora
