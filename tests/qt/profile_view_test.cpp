#include <gmock/gmock.h>

#include <QAccessible>
#include <QStatusBar>
#include <QTest>

#include "messenger/frm_profile.h"
#include "platform/boxes.h"
#include "platform/ini_settings_file.h"
#include "platform/qt/binder.h"
#include "platform/qt/qt_loop_host.h"
#include "platform/qt/windows.h"
#include "tests/support/in_memory_files.h"

using namespace velmora;
using testing::IsEmpty;

namespace {

struct IdleInet : Inet {
    std::string OpenURL(const std::string&) override { return {}; }
    bool StillExecuting() const override { return false; }
    std::string GetHeader(std::string_view) const override { return {}; }
};

struct IdleInets : Inets {
    std::unique_ptr<Inet> create() override {
        auto inet = std::make_unique<IdleInet>();
        latest = inet.get();
        return inet;
    }
    IdleInet* latest = nullptr;
};

struct ProfileView : testing::Test {
    ProfileView() {
        host.carry(&loop);
        profile.cmdFinish.Click.connect([this] { ++finished; });
        profile.Show();
        host.serve(std::chrono::milliseconds{0});  // the window becomes the active one
    }
    QWidget& window() { return *windows.window(profile); }
    QWidget& at(const char* name) { return *window().findChild<QWidget*>(QString::fromLatin1(name)); }
    void keys(const char* text) { QTest::keyClicks(window().focusWidget(), QString::fromLatin1(text)); }
    void key(Qt::Key key) { QTest::keyClick(window().focusWidget(), key); }

    qt::QtLoopHost host;
    Loop loop{host};
    Forms forms{loop};
    Boxes boxes{loop};
    InMemoryFiles files;
    IniSettingsFile ini{files};
    Settings settings{ini, "/home"};
    MachineSettings machine{ini, "/home"};
    IdleInets inets;
    std::string iniFile = "Velmora.ini", mainKey, uid, nickName;
    Request explain;
    int finished = 0;
    frmProfile profile{forms,
                       {.settings = settings,
                        .IniFile = iniFile,
                        .dialogs = boxes,
                        .inets = inets,
                        .directory = DirectoryService(machine),
                        .IsConnected = [] { return true; },
                        .DialUp = {},
                        .Character = []() -> AgentCharacter& { throw Failure(errors::objectNotSet); },
                        .AgentVisible = [] {},
                        .MoveAgentTo = [](long, long) {},
                        .RequestExplain = explain,
                        .MainKey = mainKey,
                        .UID = uid,
                        .NickName = nickName}};
    qt::QtWindows windows{forms, qt::views()};
};

}  // namespace

TEST_F(ProfileView, EveryWidgetIsAControl) {
    EXPECT_THAT(qt::Binder(profile, window(), loop).unbound(), IsEmpty());
}

TEST_F(ProfileView, IsFilledInAndFinishedByKeyboardAlone) {
    for (const char* text : {"Ann", "Lee", "ann@example.org", "annie"}) {
        keys(text);
        key(Qt::Key_Tab);
    }
    key(Qt::Key_Space);
    EXPECT_TRUE(profile.OutlookChoice);
    key(Qt::Key_Right);
    EXPECT_FALSE(profile.OutlookChoice);
    EXPECT_EQ(profile.txtFName.mainValue() + profile.txtLName.mainValue() + profile.txtEMail.mainValue() +
                  profile.txtNickName.mainValue(),
              "AnnLeeann@example.organnie");
    key(Qt::Key_Return);
    EXPECT_EQ(finished, 1);
    key(Qt::Key_Escape);
    EXPECT_TRUE(profile.visible());
}

TEST_F(ProfileView, EveryFieldHasANameToBeReadOut) {
    for (const auto& [field, name] : {std::pair{"txtFName", "First Name:"},
                                      {"txtLName", "Last Name:"},
                                      {"txtEMail", "E-Mail Address:"},
                                      {"txtNickName", "Nick Name:"},
                                      {"optYes_0", "Yes"},
                                      {"cmdFinish", "Finish"}})
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&at(field))->text(QAccessible::Name),
                  QString::fromLatin1(name));
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(&at("txtUID"))->text(QAccessible::Name).isEmpty());
    EXPECT_FALSE(
        QAccessible::queryAccessibleInterface(&at("optYes_1"))->text(QAccessible::Description).isEmpty());
}

TEST_F(ProfileView, OpensWhereTheCharacterFindsRoomAndFollowsATransferInItsStatusLine) {
    EXPECT_EQ(window().pos(), QPoint(profile.Left, profile.Top) / Form::twipsToThePixel);
    auto& status = static_cast<QStatusBar&>(at("Status"));
    loop.turn([&] { inets.latest->StateChanged(TransferState::receivingResponse); });
    EXPECT_EQ(status.currentMessage(), QStringLiteral("Recieving Response"));
    loop.turn([&] { inets.latest->StateChanged(static_cast<TransferState>(13)); });
    EXPECT_EQ(status.currentMessage(), QStringLiteral("Recieving Response"));
}
