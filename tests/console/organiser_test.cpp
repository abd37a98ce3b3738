#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/console/terminal_session.h"

namespace velmora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::StartsWith;

/// The real program on real files, at nine in the morning of 5 March 2026.
class OrganiserTerminal : public testing::Test {
protected:
    OrganiserTerminal() { folder.write("Velmora.ini", "[Options]\nDefault=True\n[User]\nName=Ann\n"); }
    std::unique_ptr<TerminalSession> start() {
        return std::make_unique<TerminalSession>(
            folder.path(), std::vector<std::string>{"--no-open", "--clock", "2026-03-05 09:05:58"});
    }

    ScratchFolder folder;
};

TEST_F(OrganiserTerminal, AppointmentOfOneRunIsReportedByTheNext) {
    auto session = start();
    EXPECT_THAT(session->readAnswer(), Contains(StartsWith("speak You have no appointments today.")));
    for (const char* line : {"set AppTime 10:30:00", "set txtEvent Lunch", "click cmdAddApp"})
        EXPECT_THAT(session->send(line), ElementsAre("ok"));
    EXPECT_FALSE(std::filesystem::exists(folder.file("Appointments.txt")));
    session->send("menu mnuExit");
    EXPECT_EQ(session->exitStatus(), 0);

    session = start();
    EXPECT_THAT(session->readAnswer(), Contains(StartsWith("speak You have Lunch today.")));
    EXPECT_THAT(session->send("select lvApps 1"), ElementsAre("popup FrmCalender.mnuAppPopUp", "ok"));
    EXPECT_THAT(session->send("menu mnuRemove"), ElementsAre("ok"));
    session->send("close FrmCalender");
    EXPECT_EQ(folder.read("Appointments.txt"), "");
}

TEST_F(OrganiserTerminal, AlarmGoesOffInSkippedTime) {
    auto session = start();
    session->readAnswer();
    session->send("menu mnuAlarm");
    session->send("set AlarmTPick 10:00:00");
    EXPECT_THAT(session->send("click cmdAlarmSet"), ElementsAre("ok"));
    EXPECT_THAT(session->send("skip 3600000"), ElementsAre("play Announce", "speak  Event  Event", "ok"));
    EXPECT_THAT(session->send("skip 86400000"), ElementsAre("ok"));
}

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

}  // namespace
}  // namespace velmora
