#include <gmock/gmock.h>

#include "messenger/transfer_status.h"
#include "tests/program/started_program.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using namespace testing;

/// As it goes out: a blank would break the line of the request, all else stands as it was typed.
const std::string request =
    "http://directory/messenger/CreateProfile.asp?FName=Ann%20Mary&Lname=Lee&EMail=a=b&NickName=a&b";

/// A program whose user is not known yet, with the wizard open.
class ProfileTest : public StartedProgram {
protected:
    ProfileTest() : StartedProgram("") {
        machine.setting("/home", "EMail", "Server", "old.example");
        machine.setting("/home", "Directory", "Endpoint", "http://directory", "platform.conf");
    }

    void fillIn() {
        program().type("txtFName", "Ann Mary").type("txtLName", "Lee").type("txtEMail", "a=b");
        program().type("txtNickName", "a&b").takeLines();
    }
    std::vector<std::string> finish() { return program().click("cmdFinish").takeLines(); }
    std::string setting(std::string_view section, std::string_view key) {
        return IniSettingsFile(machine.files).read(section, key, "none", "/home/Velmora.ini");
    }
};

TEST_F(ProfileTest, NothingIsStoredOrSentBeforeAllFieldsAreFilled) {
    program().takeLines();
    EXPECT_THAT(finish(),
                ElementsAre("play Confused", StartsWith("speak I can't see your name."), "play Restpose",
                            StartsWith("speak Please enter your name."), "focus txtFName"));
    fillIn();
    for (const char* field : {"txtLName", "txtEMail", "txtNickName"}) {
        program().type(field, "");
        EXPECT_THAT(finish(),
                    ElementsAre(StartsWith("speak Please fill in all the fields for your profile. ")));
        program().type(field, "x");
    }
    EXPECT_EQ(setting("User", "Name"), "none");
    EXPECT_THAT(machine.web.takeRequests(), IsEmpty());
}

TEST_F(ProfileTest, FirstRunGivesANumberThatTheNextStartKnows) {
    machine.web.serve(request, "4711");
    fillIn();
    EXPECT_EQ(program().click("optYes(1)").click("optYes(0)").value("optYes(1)"), "False");
    EXPECT_THAT(
        finish(),
        ElementsAre(
            "play Processing", "stopall", "play Wave", "speak Hi Ann Mary Hi Ann Mary", "play Pleased",
            StartsWith(
                "speak I have created a messenger profile for you. Your unique ID number (UID) is 4711 "),
            StartsWith("speak You can give your UID number to your friends so they can chat with you."),
            "play Explain", StartsWith("speak I'll quickly show you what I can do."), "play RestPose",
            StartsWith("speak My main menu. lists"), StartsWith("speak Open my menu"),
            StartsWith("speak To close my menu"), StartsWith("speak If I'm in your way"),
            StartsWith("speak Use the hide command")));
    EXPECT_THAT(machine.web.takeRequests(), ElementsAre(request));
    EXPECT_EQ(program().value("Status"), "Complete");
    EXPECT_EQ(setting("User", "Name"), "Ann Mary");
    EXPECT_EQ(setting("User", "LastName"), "Lee");
    EXPECT_EQ(setting("User", "EMail"), "a=b");
    EXPECT_EQ(setting("User", "OutlookEnabled"), "True");
    for (const char* key : {"Server", "User", "Pass", "Interval"}) EXPECT_EQ(setting("EMail", key), "");
    EXPECT_EQ(program().value("cmdFinish"), "Done");
    EXPECT_THAT(finish(), ElementsAre("form frmProfile unloaded"));

    const auto known = [](Program& inside) {
        EXPECT_EQ(inside.main().UID, "4711");
        EXPECT_EQ(inside.main().NickName, "a&b");
    };
    program().run(known).menu("mnuExit");
    auto& next = machine.start("/home");
    EXPECT_THAT(next.run(known).takeSaid(),
                ElementsAre("Morning Ann Mary.", "You have no appointments today."));
}

TEST_F(ProfileTest, WhatWasTypedOutlivesFailuresAndGoesOutAgain) {
    machine.web.serve(request, WebAnswer{.failure = errors::transferNotConnected});
    machine.web.serve(request, "");
    machine.web.serve(request, "<html>404\xff");
    fillIn();
    EXPECT_THAT(finish(), ElementsAre("play Processing",
                                      AllOf(StartsWith("box Error! 35754\\n"), EndsWith(" exclamation ok"))));
    EXPECT_EQ(program().value("Status"), "Error !");
    EXPECT_EQ(setting("User", "Name"), "Ann Mary");  // known from now on, although without a number
    EXPECT_EQ(setting("User", "OutlookEnabled"), "False");
    EXPECT_THAT(finish(), ElementsAre("play Processing"));
    EXPECT_EQ(program().value("cmdFinish"), "Finish");
    EXPECT_EQ(setting("Messenger", "UID"), "none");
    EXPECT_THAT(finish(), Contains("stopall"));
    EXPECT_THAT(machine.web.takeRequests(), ElementsAre(request, request, request));
    program().run([](Program& inside) { EXPECT_EQ(inside.main().UID, "<html>404\xff"); });
}

TEST_F(ProfileTest, AnswerIsCutToWhatATextBoxHolds) {
    std::string page = "no number";
    page.resize(10'000'000);
    machine.web.serve(request, page);
    fillIn();
    finish();
    program().run([&](Program& inside) { EXPECT_EQ(inside.main().UID, page.substr(0, 65535)); });
}

TEST_F(ProfileTest, SecondPressDuringATransferFailsAndTheFirstGoesOn) {
    machine.web.serve(request, WebAnswer{.body = "4711", .delay = 5s});
    fillIn();
    EXPECT_THAT(finish(), ElementsAre("play Processing"));
    EXPECT_THAT(finish(), ElementsAre("play Processing", StartsWith("box Error! 35764\\n")));
    EXPECT_EQ(after(5s).value("cmdFinish"), "Done");
}

TEST_F(ProfileTest, ClosedDuringATransferItIsNotHeardOfAgain) {
    machine.web.serve(request, WebAnswer{.body = "4711", .delay = 5s});
    machine.web.serve(request, WebAnswer{.hangs = true});
    fillIn();
    for (int answer = 0; answer < 2; ++answer) {
        finish();
        EXPECT_THAT(program().close("frmProfile").takeLines(), ElementsAre("form frmProfile unloaded"));
        EXPECT_THAT(after(2min).takeLines(), IsEmpty());
        program().run([](Program& inside) { inside.profile().Show(); });
        EXPECT_EQ(program().value("cmdFinish"), "Finish");
        fillIn();
    }
    EXPECT_EQ(setting("Messenger", "UID"), "none");
}

TEST(TransferStatus, IsWrittenAsItAlwaysWasAndUnknownStatesLeaveIt) {
    EXPECT_EQ(transferStatus(TransferState::receivingResponse), "Recieving Response");
    EXPECT_EQ(transferStatus(TransferState::responseReceived), "Response Recieved");
    EXPECT_FALSE(transferStatus(static_cast<TransferState>(13)));
}

TEST_F(ProfileTest, ProgramEndsWhileATransferHangs) {
    machine.web.serve(request, WebAnswer{.hangs = true});
    fillIn();
    finish();
    EXPECT_TRUE(program().menu("mnuExit").ended());
    EXPECT_THAT(program().takeLines(), Contains("form frmProfile unloaded"));
}

TEST_F(ProfileTest, WithoutALinkItAsksToDialAndWaitsUnlessItIsClosed) {
    machine.web.serve(request, "4711");
    fillIn();
    machine.link.found->clear();
    EXPECT_THAT(finish(), ElementsAre(StartsWith("dial ")));
    machine.advance(10s);
    EXPECT_LE(machine.link.asked, 300);
    program().close("frmProfile");
    machine.advance(1s);
    EXPECT_THAT(machine.web.takeRequests(), IsEmpty());

    program().run([](Program& inside) { inside.profile().Show(); });
    fillIn();
    finish();
    machine.advance(1s);
    EXPECT_THAT(machine.web.takeRequests(), IsEmpty());
    machine.link.found = {{LinkStatus::connected}};
    machine.advance(1s);
    EXPECT_THAT(machine.web.takeRequests(), ElementsAre(request));
    EXPECT_EQ(program().value("cmdFinish"), "Done");
}

TEST_F(ProfileTest, HiddenCharacterIsAskedToComeAndStoppedAtOnce) {
    machine.web.serve(request, "4711");
    fillIn();
    program().menu("mnuHide").takeLines();
    auto lines = finish();
    lines.resize(4);
    EXPECT_THAT(lines, ElementsAre("play Processing", "show", "stopall", "play Wave"));
}

}  // namespace
}  // namespace velmora
