#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>

#include "core/crypter.h"
#include "tests/console/terminal_session.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The real program on real files, at nine in the morning of 5 March 2026.
class OrganiserTerminal : public testing::Test {
protected:
    OrganiserTerminal() { folder.write("Velmora.ini", "[Options]\nDefault=True\n[User]\nName=Ann\n"); }
    std::unique_ptr<TerminalSession> start(const std::string& clock = "2026-03-05 09:05:58") {
        return std::make_unique<TerminalSession>(
            folder.path(), std::vector<std::string>{"--no-open", "--seed", "2", "--clock", clock});
    }

    ScratchFolder folder;
};

TEST_F(OrganiserTerminal, FileOfAMillionLinesIsReadAndWrittenBack) {
    std::string content;
    for (int line = 0; line < 1'000'000; ++line) content += "0123456789@@@\r\n";
    folder.write("Appointments.txt", content);
    auto session = start();
    EXPECT_THAT(session->readAnswer(),
                Contains(R"(box Calender Error An error occured while updating the appointments file.\n)"
                         R"(Number: 6\nDescription: Overflow none ok)"));
    session->send("close FrmCalender");
    EXPECT_EQ(folder.read("Appointments.txt"), content);
}

/// One day as a person spends it with the program, and what the program makes of it.
class DayInTheTerminal : public OrganiserTerminal {
protected:
    DayInTheTerminal() {
        folder.write("Velmora.ini", profile);
        folder.write("Jokes.txt", "Knock, knock.\r\n");
        folder.write("play.vls", "Show\r\nSay:Bravo\r\nPlay:Wave");
    }

    /// What follows the lines, but for their `ok` and for jokes, which are counted.
    std::vector<std::string> after(TerminalSession& session, std::initializer_list<std::string> lines) {
        const std::vector<std::string> joke{"play GetAttention", "speak Knock, knock. Knock, knock.",
                                            "play GetAttentionReturn", "play Pleased"};
        std::vector<std::string> all;
        for (const std::string& line : lines) {
            const auto answer = session.send(line);
            EXPECT_EQ(answer.back(), "ok") << line;
            all.insert(all.end(), answer.begin(), answer.end() - 1);
        }
        for (auto told = all.begin();; ++jokes) {
            told = std::search(told, all.end(), joke.begin(), joke.end());
            if (told == all.end()) return all;
            told = all.erase(told, told + std::ssize(joke));
        }
    }
    /// The end of a session by its menu.
    void exit(TerminalSession& session) {
        session.send("menu mnuExit");
        EXPECT_THAT(session.readAnswer(), ElementsAre("bye"));
        EXPECT_EQ(session.exitStatus(), 0);
    }

    const std::string profile = "[Options]\nDefault=True\nJokes=On\n[User]\nName=Ann\n";
    const std::string dentist = Encipher("3/5/2026@10:30:00 AM@Dentist@", mainKey) + "\r\n";
    const std::string tea = Encipher("3/5/2026@3:00:00 PM@Tea with Bob@", mainKey) + "\r\n";
    const std::string walk = Encipher("3/6/2026@10:00:00 AM@Walk@", mainKey) + "\r\n";
    int jokes = 0;
};

TEST_F(DayInTheTerminal, IsSaidInOrderAndLeavesTheFilesThatTheNextDayBeginsWith) {
    auto session = start("2026-03-04 20:00:00");
    session->readAnswer();
    EXPECT_THAT(after(*session, {"set Calender 2026-03-05", "set AppTime 10:30:00", "set txtEvent Dentist",
                                 "click cmdAddApp", "set AppTime 15:00:00", "set txtEvent Tea with Bob",
                                 "click cmdAddApp"}),
                IsEmpty());
    exit(*session);
    EXPECT_EQ(folder.read("Appointments.txt"), dentist + tea);

    session = start("2026-03-05 08:55:00");
    EXPECT_THAT(session->readAnswer(),
                Contains("speak You have 2appointments today. You have 2appointments today."));
    EXPECT_THAT(after(*session, {"menu mnuAlarm", "set AlarmTPick 09:00:00", "set txtAlarmEvent Stand up",
                                 "click cmdAlarmSet", "skip 240000"}),
                ElementsAre("form FrmMain shown"));
    EXPECT_THAT(after(*session, {"skip 60000"}), ElementsAre("play Announce", "speak  Stand up  Stand up"));
    EXPECT_THAT(after(*session, {"set Calender 2026-03-06", "set AppTime 10:00:00", "set txtEvent Walk",
                                 "click cmdAddApp", "skip 3600000"}),
                IsEmpty());
    EXPECT_THAT(
        after(*session, {"menu mnuScriptOpen", "pick " + folder.file("play.vls")}),
        ElementsAre(R"(dialog open Open File Action Scripts\0*.vls\0\0)", "speak Bravo Bravo", "play Wave"));
    EXPECT_THAT(after(*session, {"skip 82800000"}), IsEmpty());
    const std::string late = "I could not add your appointment.";
    EXPECT_THAT(after(*session, {"set Calender 2026-03-05", "click cmdAddApp"}),
                ElementsAre("play Sad", "speak " + late + " " + late));
    EXPECT_GT(jokes, 0);
    EXPECT_EQ(folder.read("Appointments.txt"), dentist + tea);
    exit(*session);
    EXPECT_EQ(folder.read("Appointments.txt"), dentist + tea + walk);
    EXPECT_EQ(folder.read("Velmora.ini"), profile);

    session = start("2026-03-06 08:55:00");
    EXPECT_THAT(session->readAnswer(), Contains("speak You have Walk today. You have Walk today."));
}

}  // namespace
}  // namespace velmora
