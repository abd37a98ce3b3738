#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <mutex>
#include <optional>

#include "tests/console/terminal_session.h"
#include "tests/support/http_server.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

/// The real program before its first run, and a directory service on this machine.
class ProfileSession : public testing::Test {
protected:
    ProfileSession() {
        server.page("/messenger/CreateProfile.asp", [this](const HttpConnection& client) { reply(client); });
    }

    TerminalSession& session() {
        if (!session_) {
            folder.write("Velmora.ini", "[Options]\nDefault=True\n");
            folder.write("platform.conf", "[Directory]\nEndpoint=" + endpoint + "\n");
            session_.emplace(folder.path());
            session_->readAnswer();
            session_->send("link up");
            for (const char* field : {"txtFName", "txtLName", "txtEMail", "txtNickName"})
                session_->send("set " + std::string(field) + " Ann");
        }
        return *session_;
    }
    /// What the next request gets; one that finds nothing hangs.
    void next(HttpServer::Page page) {
        const std::lock_guard lock(mutex_);
        replies_.push_back(std::move(page));
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

    HttpServer server;
    std::string endpoint = server.url("/");
    ScratchFolder folder;

private:
    void reply(const HttpConnection& client) {
        HttpServer::Page page = &HttpConnection::hold;
        {
            const std::lock_guard lock(mutex_);
            if (!replies_.empty()) {
                page = std::move(replies_.front());
                replies_.pop_front();
            }
        }
        page(client);
    }

    std::mutex mutex_;
    std::deque<HttpServer::Page> replies_;
    std::optional<TerminalSession> session_;
};

TEST_F(ProfileSession, ServiceGivesTheNumberThatTheCharacterTells) {
    next([](const HttpConnection& client) { client.answer("4711"); });
    session().send("set txtLName O Hara&x=1");
    EXPECT_THAT(finish("speak I have created"),
                Contains(StartsWith("speak I have created a messenger profile for you. Your unique ID number "
                                    "(UID) is 4711 ")));
    EXPECT_THAT(server.requests(),
                ElementsAre(StartsWith("GET /messenger/CreateProfile.asp?FName=Ann&Lname=O%20Hara&x=1&EMail="
                                       "Ann&NickName=Ann HTTP/1.")));
    EXPECT_EQ(value("txtUID"), "value 4711");
    EXPECT_EQ(value("Status"), "value Complete");
    EXPECT_THAT(session().send("click cmdFinish"), ElementsAre("form frmProfile unloaded", "ok"));
}

TEST_F(ProfileSession, WhateverComesInPlaceOfANumberIsAnsweredByAnotherPress) {
    constexpr std::string_view cut = "HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc";
    const std::pair<const char*, HttpServer::Page> failures[] = {
        {"cut short", [&](const HttpConnection& client) { client.send(cut); }},
        {"reset",
         [&](const HttpConnection& client) {
             client.send(cut);
             client.reset();
         }},
        {"nothing", [](const HttpConnection&) {}},
        {"endless",
         [](const HttpConnection& client) {
             client.send("HTTP/1.1 200 OK\r\n\r\n");
             const std::string much(1'000'000, 'x');
             for (int i = 0; i < 100 && client.send(much); ++i) {
             }
         }},
    };
    for (const auto& [what, page] : failures) {
        SCOPED_TRACE(what);
        next(page);
        EXPECT_THAT(finish("box"), Contains(StartsWith("box Error! 357")));
        EXPECT_EQ(value("txtFName") + value("cmdFinish"), "value Annvalue Finish");
    }
    next([](const HttpConnection& client) { client.answer(""); });
    session().send("click cmdFinish");
    for (int waits = 0; waits < 2000 && value("Status") != "value Complete"; ++waits)
        session().send("wait 20");
    EXPECT_EQ(value("cmdFinish"), "value Finish");
    next([](const HttpConnection& client) { client.answer("<h1>\xff</h1>", {}, "500 Oh"); });
    finish("speak I have created");  // a page of an error is a number like any other, on purpose
    EXPECT_EQ(value("txtUID"), "value <h1>\xc3\xbf</h1>");
}

TEST_F(ProfileSession, ServiceThatIsNotThereIsABox) {
    endpoint = "http://127.0.0.1:1";
    EXPECT_THAT(finish("box"), Contains(StartsWith("box Error! 35754\\n")));
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
