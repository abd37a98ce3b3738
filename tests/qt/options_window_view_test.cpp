#include <gmock/gmock.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabBar>
#include <QTest>
#include <deque>

#include "options/frm_options.h"
#include "platform/boxes.h"
#include "platform/ini_settings_file.h"
#include "platform/qt/binder.h"
#include "platform/qt/qt_loop_host.h"
#include "platform/qt/windows.h"
#include "tests/support/in_memory_files.h"

using namespace velmora;
using testing::IsEmpty;

namespace {

/// The form whose timers and menus the options window is given.
struct Hub : Form {
    explicit Hub(Forms& forms) : Form(forms, "Hub", "Hub") {}
    Menu& entry(std::string_view name, std::optional<int> index) {
        return entries_.emplace_back(*this, top_, name, MenuDesign{}, index);
    }
    Timer TmrMail{*this, "TmrMail"};
    Timer TimerJoke{*this, "TimerJoke"};

private:
    Menu top_{*this, "mnuTop", {.Caption = "Top"}};
    std::deque<Menu> entries_;
};

struct OptionsWindowView : testing::Test {
    OptionsWindowView() {
        host.carry(&loop);
        options.Show_Frame("Office");
    }
    template <class Widget = QWidget>
    Widget& at(const char* name) {
        return *windows.window(options)->findChild<Widget*>(QString::fromLatin1(name));
    }
    /// The one frame in view; 0 if it is not exactly one.
    int page() {
        int found = 0;
        for (int index = 1; index <= 5; ++index) {
            if (!at(("Frame_" + std::to_string(index)).c_str()).isVisible()) continue;
            if (found != 0) return 0;
            found = index;
        }
        return found;
    }
    void settle() { host.serve(std::chrono::milliseconds{0}); }

    qt::QtLoopHost host;
    Loop loop{host};
    Forms forms{loop};
    Boxes boxes{loop};
    FileDialogs fileDialogs{boxes};
    InMemoryFiles files;
    IniSettingsFile ini{files};
    Settings settings{ini, "/home"};
    std::string iniFile = "Velmora.ini";
    std::string key = "key";
    std::int16_t mailInterval = 0;
    bool readEntire = false;
    Hub hub{forms};
    FrmOptions options{forms,
                       {.files = files,
                        .settings = settings,
                        .IniFile = iniFile,
                        .applicationFolder = "/home",
                        .dialogs = boxes,
                        .fileDialogs = fileDialogs,
                        .menu = [this](std::string_view name, std::optional<int> index) -> Menu& {
                            return hub.entry(name, index);
                        },
                        .Character = []() -> AgentCharacter& { throw Failure(errors::objectNotSet); },
                        .MainKey = key,
                        .TmrMail = hub.TmrMail,
                        .TimerJoke = hub.TimerJoke,
                        .MailInterval = mailInterval,
                        .ReadEntire = readEntire,
                        .ReadMailSettings = [] {},
                        .LoadOfficeList = [] {},
                        .SaveOfficeList = [] {},
                        .LoadFavouritesList = [] {},
                        .SaveFavouritesList = [] {}}};
    qt::QtWindows windows{forms, qt::views()};
};

}  // namespace

TEST_F(OptionsWindowView, EveryWidgetIsAControlAndTellsAssistiveToolsWhatItIs) {
    const qt::Binder binder(options, *windows.window(options), loop);
    EXPECT_THAT(binder.unbound(), IsEmpty());
    std::set<const QWidget*> labelled;
    for (const QLabel* label : windows.window(options)->findChildren<QLabel*>())
        labelled.insert(label->buddy());
    for (const Control* control : options.controls()) {
        const QWidget* widget = binder.widgetOf(*control);
        if (!control->Visible.peek() || control->property("Caption")) continue;
        EXPECT_TRUE(labelled.contains(widget) || !widget->accessibleName().isEmpty()) << control->name();
    }
}

TEST_F(OptionsWindowView, PageBroughtIntoViewCoversTheOthersAndTheWindowKeepsItsSize) {
    settle();
    const QSize size = windows.window(options)->sizeHint();
    auto& tabs = at<QTabBar>("TabStrip");
    EXPECT_EQ(page(), 1);
    options.Show_Frame("Mail");  // page 1 stays visible, beneath
    EXPECT_EQ(page(), 4);
    const auto click = [&](int tab) {
        QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(tab).center());
        settle();
    };
    click(0);  // the tab that is chosen already
    EXPECT_EQ(page(), 1);
    click(4);
    EXPECT_EQ(page(), 5);
    options.Show_Frame("Jokes");
    options.Show_Frame("Accessories");
    click(2);
    EXPECT_EQ(page(), 3);
    EXPECT_EQ(options.CurrentFrame, 3);
    EXPECT_EQ(windows.window(options)->sizeHint(), size);
}

TEST_F(OptionsWindowView, RowIsEditedInPlaceByKeyboardAlone) {
    settle();
    auto& list = at<QComboBox>("ComOffice");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Down);
    settle();
    EXPECT_EQ(at<QLineEdit>("txtProgrammeName").text(), QStringLiteral("Item 1"));
    for (const char* typed : {"Writer", "/usr/bin/writer"}) {
        QTest::keyClick(windows.window(options)->focusWidget(), Qt::Key_Tab);
        QTest::keyClicks(windows.window(options)->focusWidget(), QString::fromLatin1(typed));
    }
    settle();
    EXPECT_EQ(options.ComOffice.List(0), "Writer");
    EXPECT_EQ(options.comOfficeCommands.List(0), "/usr/bin/writer");
    EXPECT_EQ(list.itemText(0), QStringLiteral("Writer"));
    QTest::keyClick(windows.window(options)->focusWidget(), Qt::Key_Escape);
    EXPECT_EQ(options.state(), FormState::unloaded);
}
