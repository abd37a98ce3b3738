#include <gmock/gmock.h>

#include <QAccessible>
#include <QCalendarWidget>
#include <QContextMenuEvent>
#include <QMenuBar>
#include <QPointer>
#include <QTest>
#include <QTextCharFormat>
#include <QTimeEdit>
#include <QTreeView>

#include "organiser/frm_alarm.h"
#include "organiser/frm_calender.h"
#include "platform/boxes.h"
#include "platform/ini_settings_file.h"
#include "platform/pattern_regional.h"
#include "platform/qt/binder.h"
#include "platform/qt/qt_loop_host.h"
#include "platform/qt/windows.h"
#include "tests/support/in_memory_files.h"

using namespace velmora;
using namespace std::chrono;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct Morning : Clock {
    DateTime now() const override { return {2026y / 3 / 5, 9h + 5min + 58s}; }
};

/// The two windows; nobody is there to speak.
struct OrganiserView : testing::Test, ProgramView {
    OrganiserView() {
        host.carry(&loop);
        forms.add(*this);
        calender.Show();
        alarmForm.Show();
        host.serve(0ms);
    }
    ~OrganiserView() override { forms.remove(*this); }
    void menuPopped(Menu& menu) override { popped.push_back(menu.name()); }

    template <class Widget>
    Widget& at(const Form& form, const char* name) {
        return *windows.window(form)->findChild<Widget*>(QString::fromLatin1(name));
    }
    void addAppointment(const char* event) {
        calender.txtEvent.Text = event;
        calender.AppTime.Value = DateTime{.time = 10h};
        loop.turn([&] { calender.cmdAddApp.click(); });
        host.serve(0ms);
    }

    qt::QtLoopHost host;
    Loop loop{host};
    Forms forms{loop};
    Boxes boxes{loop};
    InMemoryFiles files;
    IniSettingsFile ini{files};
    Settings settings{ini, "/"};
    std::string folder = "/";
    std::string iniFile = "Velmora.ini";
    Morning clock;
    PatternRegional regional;
    std::function<AgentCharacter&()> nobody = []() -> AgentCharacter& {
        throw Failure(errors::objectNotSet);
    };

    struct Panel : Form {
        explicit Panel(Forms& forms) : Form(forms, "Panel", "") {}
        DTPicker AlarmTPick{*this, "AlarmTPick", {.Shows = PickerKind::time}};
        TextBox txtAlarmEvent{*this, "txtAlarmEvent"};
        Button cmdAlarmSet{*this, "cmdAlarmSet"};
        Button cmdAlarmOptions{*this, "cmdAlarmOptions"};
        Menu mnuAlarm{*this, "mnuAlarm", {}};
    } panel{forms};
    Alarm alarm{{.AlarmTPick = panel.AlarmTPick,
                 .txtAlarmEvent = panel.txtAlarmEvent,
                 .cmdAlarmSet = panel.cmdAlarmSet,
                 .cmdAlarmOptions = panel.cmdAlarmOptions,
                 .mnuAlarm = panel.mnuAlarm,
                 .clock = clock,
                 .regional = regional,
                 .Character = nobody,
                 .AgentVisible = [] {},
                 .showOptions = [] {},
                 .show = [] {}}};
    FrmAlarm alarmForm{
        forms,
        {.alarm = alarm, .txtAlarmEvent = panel.txtAlarmEvent, .Character = nobody, .AgentVisible = [] {}}};
    FrmCalender calender{forms,
                         {.settings = settings,
                          .IniFile = iniFile,
                          .files = files,
                          .applicationFolder = folder,
                          .clock = clock,
                          .regional = regional,
                          .dialogs = boxes,
                          .FileExists = [](const std::string&) { return false; },
                          .Character = nobody,
                          .AgentVisible = [] {}}};
    qt::QtWindows windows{forms, qt::views()};
    std::vector<std::string> popped;
};

}  // namespace

TEST_F(OrganiserView, EveryWidgetIsAControlAndHasANameForScreenReaders) {
    for (const Form* form : {static_cast<Form*>(&calender), static_cast<Form*>(&alarmForm)}) {
        const qt::Binder binder(*form, *windows.window(*form), loop);
        EXPECT_THAT(binder.unbound(), IsEmpty()) << form->name();
        for (const Control* control : form->controls()) {
            const QAccessibleInterface* interface =
                QAccessible::queryAccessibleInterface(binder.widgetOf(*control));
            EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty()) << control->name();
        }
    }
}

TEST_F(OrganiserView, TimeIsSetToTheSecond) {
    auto& picker = at<QTimeEdit>(calender, "AppTime");
    EXPECT_TRUE(picker.displayFormat().contains(QStringLiteral("ss")))
        << picker.displayFormat().toStdString();
    EXPECT_EQ(picker.time(), QTime(9, 5, 58));
}

TEST_F(OrganiserView, DaysThatHaveAppointmentsStandOut) {
    addAppointment("Lunch");
    const auto& month = at<QCalendarWidget>(calender, "Calender");
    EXPECT_TRUE(month.dateTextFormat(QDate(2026, 3, 5)).fontUnderline());
    loop.turn([&] { calender.Calender.setMarked({2026y / 3 / 9}); });
    EXPECT_EQ(month.dateTextFormat().keys(), QList<QDate>{QDate(2026, 3, 9)});
}

TEST_F(OrganiserView, DayIsChosenByKeyboardAndTheChosenDayByAClick) {
    int choices = 0;
    calender.Calender.Change.connect([&] { ++choices; });
    auto& grid = *at<QCalendarWidget>(calender, "Calender").findChild<QAbstractItemView*>();
    grid.setFocus();
    QTest::keyClick(&grid, Qt::Key_Right);
    EXPECT_EQ(calender.Calender.mainValue(), "2026-03-06");
    host.serve(0ms);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(grid.currentIndex()).center());
    EXPECT_EQ(choices, 2);
    const QPoint otherDay = grid.visualRect(grid.currentIndex().siblingAtColumn(0)).center();
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, otherDay);
    EXPECT_EQ(choices, 3);
}

TEST_F(OrganiserView, MenuOfARowOpensForTheMouseAndTheMenuKeyAndNotForArrowKeys) {
    for (const char* event : {"Lunch", "Tea"}) addAppointment(event);
    auto& list = at<QTreeView>(calender, "lvApps");
    const auto centre = [&](int row) { return list.visualRect(list.model()->index(row, 0)).center(); };
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, centre(0));
    EXPECT_THAT(popped, ElementsAre("mnuAppPopUp"));
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(calender.lvApps.SelectedItem().SubItems.front(), "Tea");
    EXPECT_EQ(popped.size(), 1U);
    QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    QApplication::sendEvent(&list, &menuKey);
    EXPECT_EQ(popped.size(), 2U);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      QPoint(centre(1).x(), list.viewport()->height() - 2));
    EXPECT_EQ(popped.size(), 2U);
}

TEST_F(OrganiserView, MenuBarShowsTheMenusAsTheyAreAndTheirEntriesWork) {
    const auto& bar = at<QMenuBar>(calender, "viewMenus");
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
    host.serve(0ms);
    EXPECT_FALSE(window);
}

TEST_F(OrganiserView, ReturnKeyAddsTheAppointmentAndClosesTheAlarmWindow) {
    int added = 0;
    calender.cmdAddApp.Click.connect([&] { ++added; });
    auto& event = at<QWidget>(calender, "txtEvent");
    event.setFocus();
    QTest::keyClick(&event, Qt::Key_Return);
    EXPECT_EQ(added, 1);
    auto& say = at<QWidget>(alarmForm, "TxtAlarmSay");
    say.setFocus();
    QTest::keyClicks(&say, QStringLiteral("Time for"));
    QTest::keyClick(&say, Qt::Key_Return);
    EXPECT_EQ(alarm.AlarmSay, "Time for");
    EXPECT_FALSE(alarmForm.alive());
}
