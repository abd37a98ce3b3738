#include <gmock/gmock.h>

#include <QPushButton>
#include <QTest>

#include "core/frm_main.h"
#include "platform/boxes.h"
#include "platform/ini_settings_file.h"
#include "platform/qt/binder.h"
#include "platform/qt/qt_loop_host.h"
#include "platform/qt/windows.h"
#include "tests/support/in_memory_files.h"

using namespace velmora;
using testing::IsEmpty;

namespace {

struct NoTray : Tray {
    void add(const std::string&) override {}
    void remove() override {}
};

struct StoppedClock : Clock {
    DateTime now() const override { return {}; }
};

struct HomeApplication : Application {
    const std::string& Path() const override { return folder; }
    bool PrevInstance() override { return false; }
    std::string folder = "/home";
};

struct MainWindowView : testing::Test {
    MainWindowView() {
        host.carry(&loop);
        main.Show();
    }
    QWidget& at(const char* name) {
        return *windows.window(main)->findChild<QWidget*>(QString::fromLatin1(name));
    }

    qt::QtLoopHost host;
    Loop loop{host};
    Forms forms{loop};
    Boxes boxes{loop};
    InMemoryFiles files;
    IniSettingsFile ini{files};
    Settings settings{ini, "/home"};
    MachineSettings machine{ini, "/home"};
    StoppedClock clock;
    HomeApplication application;
    NoTray tray;
    std::string iniFile = "Velmora.ini";
    frmAbout about{forms, {.machine = machine, .Execute = {}}};
    FrmMain main{forms,
                 {.application = application,
                  .settings = settings,
                  .IniFile = iniFile,
                  .clock = clock,
                  .dialogs = boxes,
                  .tray = tray,
                  .machine = machine,
                  .About = about,
                  .Execute = {},
                  .Speak = {},
                  .UserName = {},
                  .AgentQuit = {},
                  .UnloadForms = {}}};
    qt::QtWindows windows{forms, qt::views()};
};

}  // namespace

TEST_F(MainWindowView, EveryWidgetIsAControl) {
    about.Show();
    for (Form* form : {static_cast<Form*>(&main), static_cast<Form*>(&about)})
        EXPECT_THAT(qt::Binder(*form, *windows.window(*form), loop).unbound(), IsEmpty()) << form->name();
}

TEST_F(MainWindowView, PanelsTakeTurnsInOnePlaceAndTheWindowKeepsItsSize) {
    const QSize size = windows.window(main)->sizeHint();
    for (int panel = 0; panel < 4; ++panel) {
        static_cast<QPushButton&>(at(("cmdFrames_" + std::to_string(panel)).c_str())).click();
        int inView = 0;
        for (const char* frame : {"FrameSearch", "FrameOpen", "FrameAlarm", "FrameMail"})
            inView += at(frame).isVisible() ? 1 : 0;
        EXPECT_EQ(inView, 1);
        EXPECT_EQ(windows.window(main)->sizeHint(), size);
    }
}

TEST_F(MainWindowView, ReturnKeyPressesTheButtonOfThePanelInView) {
    std::string pressed;
    for (Button* button : {&main.cmdSearch, &main.cmdOpenGo, &main.cmdAlarmSet})
        button->Click.connect([&pressed, button] { pressed += button->name() + " "; });
    for (const auto& [panel, field] : {std::pair{0, "comQuery"}, {1, "txtOpenFile"}, {2, "txtAlarmEvent"}}) {
        loop.turn([&, index = panel] { main.cmdFrames_Click(index); });
        at(field).setFocus();
        QTest::keyClick(&at(field), Qt::Key_Return);
    }
    EXPECT_EQ(pressed, "cmdSearch cmdOpenGo cmdAlarmSet ");
}
