#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QCalendarWidget>
#include <QContextMenuEvent>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTextCharFormat>
#include <QTimeEdit>
#include <QTreeView>

#include "platform/boxes.h"
#include "platform/console/addresses.h"
#include "platform/console/terminal_ports.h"
#include "platform/engine/engine_agent.h"
#include "platform/engine/instant_stage.h"
#include "platform/ini_settings_file.h"
#include "platform/pattern_regional.h"
#include "platform/qt/binder.h"
#include "platform/qt/qt_loop_host.h"
#include "platform/qt/windows.h"
#include "program/program.h"
#include "tests/support/in_memory_files.h"
#include "tests/support/simulated_inets.h"
#include "tests/support/simulated_link.h"
#include "tests/support/simulated_sockets.h"

namespace velmora {
namespace {

using namespace std::chrono;  // dates
using testing::ElementsAre;
using testing::IsEmpty;

/// The whole program on a machine in memory, its user greeted, and its windows.
class Views : public testing::Test, private Application, private Clock, private ProgramView {
protected:
    Views() {
        host.carry(&loop);
        files.put("/home/Velmora.ini", "[Options]\nDefault=True\n[User]\nName=Ann\nOutlookEnabled=True\n");
        program.start();
        loop.run([this] { return program.main().state() == FormState::loaded && !loop.due(); });
        program.forms().add(*this);
    }
    ~Views() override { program.forms().remove(*this); }

    Form& form(const std::string& name) { return *program.forms().find(name); }
    /// The form's window, which is shown and the active one.
    QWidget& window(const std::string& name) {
        loop.turn([&] { form(name).Show(); });
        settle();
        windows.window(form(name))->activateWindow();
        settle();
        return *windows.window(form(name));
    }
    template <class Widget = QWidget>
    Widget& at(const std::string& form, const std::string& name) {
        return *window(form).findChild<Widget*>(QString::fromStdString(name));
    }
    std::string value(const std::string& address) { return Addresses(program.forms()).value(address); }
    /// Lets what has been gathered appear.
    void settle() { host.serve(0ms); }

    qt::QtLoopHost host;
    Loop loop{host};
    InMemoryFiles files;
    Boxes boxes{loop};
    std::vector<std::string> popped;

private:
    const std::string& Path() const override { return folder_; }
    bool PrevInstance() override { return false; }
    DateTime now() const override { return {2026y / 3 / 5, 9h + 5min + 58s}; }
    void menuPopped(Menu& menu) override { popped.push_back(menu.name()); }

    const std::string folder_ = "/home";
    IniSettingsFile settings_{files};
    MachineSettings machine_{settings_, folder_};
    SeededRandom random_{1};
    PatternRegional regional_;
    std::ostringstream out_;
    LinePrinter printer_{out_};
    TerminalShell shell_{printer_, nullptr};
    TerminalTray tray_{printer_, nullptr};
    TerminalPointer pointer_;
    SimulatedNetwork network_;
    SimulatedWinsocks winsocks_{network_, [](const auto&) {}};
    SimulatedWeb web_;
    SimulatedInets inets_{loop, web_};
    SimulatedLink link_;
    EngineAgent agent_{{.loop = loop, .random = random_, .load = [](EngineAgent&) {
                            return Actor{"Merlin", std::make_unique<InstantStage>()};
                        }}};
    Platform platform_{loop,  *this,  files, settings_, machine_, *this,     random_, regional_,
                       boxes, shell_, tray_, pointer_,  agent_,   winsocks_, inets_,  link_};

protected:
    Program program{platform_};
    qt::QtWindows windows{program.forms(), qt::views()};
};

TEST_F(Views, EveryWidgetIsAControlAndWhateverOneCanUseHasANameForScreenReaders) {
    for (Form* each : program.forms().all()) {
        const qt::Binder binder(*each, window(each->name()), loop);
        EXPECT_THAT(binder.unbound(), IsEmpty()) << each->name();
        for (const Control* control : each->controls()) {
            QWidget* widget = binder.widgetOf(*control);
            if (!widget || !control->Visible.peek() || control->kind() == "StatusBar") continue;
            const QAccessibleInterface* told = QAccessible::queryAccessibleInterface(widget);
            EXPECT_FALSE(told->text(QAccessible::Name).isEmpty()) << each->name() << "." << control->name();
        }
    }
    for (const auto& [field, name] : {std::pair{"txtFName", "First Name:"},
                                      {"txtLName", "Last Name:"},
                                      {"txtEMail", "E-Mail Address:"},
                                      {"txtNickName", "Nick Name:"},
                                      {"optYes_0", "Yes"}})
        EXPECT_EQ(QAccessible::queryAccessibleInterface(&at("frmProfile", field))->text(QAccessible::Name),
                  QString::fromLatin1(name));
}

TEST_F(Views, TabGoesThroughTheFieldsInTheirOrder) {
    struct Case {
        const char* form;
        std::vector<std::string> fields;
    };
    program.options().Show_Frame("Office");
    for (const auto& [form, fields] :
         {Case{"frmProfile", {"txtFName", "txtLName", "txtEMail", "txtNickName", "optYes_0", "cmdFinish"}},
          Case{"FrmOptions", {"ComOffice", "txtProgrammeName", "txtOfficeCommand"}},
          Case{"frmWriteScript",
               {"comAnim", "cmdAdd_0", "cmdPreview_0", "txtSay", "cmdAdd_1", "cmdPreview_1", "txtScript",
                "cmdPreviewScript", "cmdSaveScript", "ImgInfo"}}}) {
        QWidget& shown = window(form);
        at(form, fields.front()).setFocus();
        std::vector<std::string> walk;
        for (std::size_t stop = 0; stop < fields.size(); ++stop) {
            walk.push_back(shown.focusWidget()->objectName().toStdString());
            QTest::keyClick(shown.focusWidget(), Qt::Key_Tab);
        }
        EXPECT_EQ(walk, fields);
    }
}

TEST_F(Views, ReturnKeyPressesTheButtonThatBelongsToTheField) {
    struct Case {
        const char *form, *field, *button;
        int panel = -1;
    };
    for (const auto& [form, field, button, panel] :
         {Case{"FrmMain", "comQuery", "cmdSearch", 0}, Case{"FrmMain", "txtOpenFile", "cmdOpenGo", 1},
          Case{"FrmMain", "txtAlarmEvent", "cmdAlarmSet", 2}, Case{"FrmCalender", "txtEvent", "cmdAddApp"},
          Case{"FrmAlarm", "TxtAlarmSay", "CmdOK"}, Case{"frmProfile", "txtNickName", "cmdFinish"}}) {
        window(form);
        if (panel >= 0) loop.turn([&, index = panel] { program.main().cmdFrames_Click(index); });
        int pressed = 0;
        dynamic_cast<Button&>(Addresses(program.forms()).control(std::string(form) + "." + button))
            .Click.connect([&pressed] { ++pressed; });
        at(form, field).setFocus();
        QTest::keyClick(&at(form, field), Qt::Key_Return);
        EXPECT_EQ(pressed, 1) << button;
    }
}

TEST_F(Views, EscapeKeyClosesTheOptionsAndNotTheProfile) {
    QTest::keyClick(&window("FrmOptions"), Qt::Key_Escape);
    EXPECT_FALSE(form("FrmOptions").alive());
    QTest::keyClick(&window("frmProfile"), Qt::Key_Escape);
    EXPECT_TRUE(form("frmProfile").visible());
}

TEST_F(Views, PanelsOfTheMainWindowTakeTurnsInOnePlaceAndTheWindowKeepsItsSize) {
    const QSize size = window("FrmMain").sizeHint();
    for (int panel = 0; panel < 4; ++panel) {
        at<QPushButton>("FrmMain", "cmdFrames_" + std::to_string(panel)).click();
        int inView = 0;
        for (const char* frame : {"FrameSearch", "FrameOpen", "FrameAlarm", "FrameMail"})
            inView += at("FrmMain", frame).isVisible() ? 1 : 0;
        EXPECT_EQ(inView, 1);
        EXPECT_EQ(window("FrmMain").sizeHint(), size);
    }
}

TEST_F(Views, PageOfTheOptionsThatIsBroughtIntoViewCoversTheOthersAndTheWindowKeepsItsSize) {
    FrmOptions& options = program.options();
    const auto pages = [&] {
        std::string seen;
        for (const char* page : {"1", "2", "3", "4", "5"})
            if (at("FrmOptions", std::string("Frame_") + page).isVisible()) seen += page;
        return seen;
    };
    auto& tabs = at<QTabBar>("FrmOptions", "TabStrip");
    const auto click = [&](int tab) {
        QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(tab).center());
        settle();
    };
    options.Show_Frame("Office");
    const QSize size = window("FrmOptions").sizeHint();
    options.Show_Frame("Mail");  // page 1 stays visible, beneath
    EXPECT_EQ(pages(), "4");
    click(0);  // the tab that is chosen already
    EXPECT_EQ(pages(), "1");
    options.Show_Frame("Jokes");
    options.Show_Frame("Accessories");
    click(2);
    EXPECT_EQ(pages(), "3");
    EXPECT_EQ(options.CurrentFrame, 3);
    EXPECT_EQ(window("FrmOptions").sizeHint(), size);
}

TEST_F(Views, ProfileOpensWhereTheCharacterFindsRoom) {
    const QPoint place = window("frmProfile").pos();
    EXPECT_EQ(place, QPoint(program.profile().Left, program.profile().Top) / Form::twipsToThePixel);
}

/// The calendar with two appointments at ten.
class CalenderView : public Views {
protected:
    CalenderView() {
        window("FrmCalender");
        for (const char* event : {"Lunch", "Tea"}) {
            calender.txtEvent.Text = event;
            calender.AppTime.Value = DateTime{.time = 10h};
            loop.turn([&] { calender.cmdAddApp.click(); });
        }
        settle();
    }
    FrmCalender& calender = program.calender();
};

TEST_F(CalenderView, ShowsTimesToTheSecondAndMarksTheDaysThatHaveAppointments) {
    calender.AppTime.Value = DateTime{.time = 9h + 5min + 58s};
    const auto& picker = at<QTimeEdit>("FrmCalender", "AppTime");
    EXPECT_TRUE(picker.displayFormat().contains(QStringLiteral("ss")))
        << picker.displayFormat().toStdString();
    EXPECT_EQ(picker.time(), QTime(9, 5, 58));
    const auto& month = at<QCalendarWidget>("FrmCalender", "Calender");
    EXPECT_TRUE(month.dateTextFormat(QDate(2026, 3, 5)).fontUnderline());
    loop.turn([&] { calender.Calender.setMarked({2026y / 3 / 9}); });
    EXPECT_EQ(month.dateTextFormat().keys(), QList<QDate>{QDate(2026, 3, 9)});
}

TEST_F(CalenderView, DayIsChosenByKeyboardAndTheChosenDayByAClick) {
    int choices = 0;
    calender.Calender.Change.connect([&] { ++choices; });
    auto& grid = *at<QCalendarWidget>("FrmCalender", "Calender").findChild<QAbstractItemView*>();
    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_Right);
    EXPECT_EQ(value("Calender"), "2026-03-06");
    settle();
    EXPECT_EQ(grid.accessibleName(), grid.locale().toString(QDate(2026, 3, 6), QLocale::LongFormat));
    for (const QModelIndex& day : {grid.currentIndex(), grid.currentIndex().siblingAtColumn(0)})
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(day).center());
    EXPECT_EQ(choices, 3);
}

TEST_F(CalenderView, MenuOfARowOpensForTheMouseAndTheMenuKeyAndNotForArrowKeys) {
    auto& list = at<QTreeView>("FrmCalender", "lvApps");
    const auto centre = [&](int row) { return list.visualRect(list.model()->index(row, 0)).center(); };
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, centre(0));
    EXPECT_THAT(popped, ElementsAre("mnuAppPopUp"));
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(calender.lvApps.SelectedItem().SubItems.front(), "Tea");
    EXPECT_EQ(popped.size(), 1U);
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    QCoreApplication::sendEvent(&list, &menuKey);
    EXPECT_EQ(popped.size(), 2U);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      QPoint(centre(1).x(), list.viewport()->height() - 2));
    EXPECT_EQ(popped.size(), 2U);
}

TEST_F(CalenderView, MenuBarShowsTheMenusAsTheyAreAndTheirEntriesWork) {
    const auto& bar = at<QMenuBar>("FrmCalender", "viewMenus");
    ASSERT_EQ(bar.actions().size(), 2);
    EXPECT_EQ(bar.actions()[1]->text(), QStringLiteral("Outlook"));
    loop.turn([&] { calender.hideOutlookMenu(); });
    EXPECT_FALSE(bar.actions()[1]->isVisible());
    QMenu& menu = *bar.actions()[0]->menu();
    for (const bool on : {true, false}) {
        Q_EMIT menu.aboutToShow();
        ASSERT_EQ(menu.actions().size(), 2);
        EXPECT_EQ(menu.actions()[0]->isChecked(), !on);
        menu.actions()[0]->trigger();
        EXPECT_EQ(calender.mnuReaddates.Checked.peek(), on);
    }
    QPointer<QWidget> window = windows.window(calender);
    loop.post([&] { menu.actions()[1]->trigger(); });
    loop.run([&] { return !calender.alive(); });
    settle();
    EXPECT_FALSE(window);
}

}  // namespace
}  // namespace velmora
