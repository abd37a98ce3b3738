#include "platform/qt/windows.h"

#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAction>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTest>
#include <QVBoxLayout>

#include "platform/boxes.h"
#include "platform/controls.h"
#include "platform/qt/box_view.h"
#include "platform/qt/qt_loop_host.h"

using namespace velmora;
using namespace std::string_view_literals;
using testing::ElementsAre;

namespace {

class Login : public Form {
public:
    explicit Login(Forms& forms) : Form(forms, "frmLogin", "Velmora Login") {
        cmdOK.Click.connect([this] {
            if (onOK) onOK();
        });
        cmdCancel.Click.connect([this] { Unload(); });
    }
    CheckBox chkDefault{*this, "chkDefault", {.Caption = "Use Default (Velmora.ini) Profile"}};
    Array<Label> lblLabels{*this, "lblLabels", {{.Caption = "&First Name:"}, {.Caption = "&Password:"}}};
    TextBox txtUserName{*this, "txtUserName"};
    TextBox txtPassword{*this, "txtPassword", {.Password = true}};
    Button cmdOK{*this, "cmdOK", {.Caption = "OK"}};
    Button cmdCancel{*this, "cmdCancel", {.Caption = "Cancel"}};
    Menu MnuMain{*this, "MnuMain", {.Caption = "Main"}};
    Menu mnuFirst{*this, MnuMain, "mnuFirst", {.Caption = "First", .Visible = false}};
    Menu mnuBar0{*this, MnuMain, "mnuBar", {.Caption = "-"}, 0};
    Menu mnuJokes{*this, MnuMain, "mnuJokes", {.Caption = "&Jokes", .Checked = true}};
    Menu mnuBar1{*this, MnuMain, "mnuBar", {.Caption = "-"}, 1};
    Menu mnuTools{*this, MnuMain, "mnuTools", {.Caption = "Tools"}};
    Menu mnuCalc{*this, mnuTools, "mnuCalc", {.Caption = "Calculator", .Enabled = false}};
    Menu mnuBar2{*this, MnuMain, "mnuBar", {.Caption = "-"}, 2};
    Menu mnuEmpty{*this, MnuMain, "mnuEmpty", {.Caption = "Empty"}};
    Menu mnuNothing{*this, mnuEmpty, "mnuNothing", {.Caption = "Nothing", .Visible = false}};
    std::function<void()> onOK;
};

class Splash : public Form {
public:
    explicit Splash(Forms& forms) : Form(forms, "FrmSplash", "Loading ...") {}
};

struct WindowsTest : testing::Test {
    WindowsTest() {
        host.carry(&loop);
        boxes.add(boxView);
        splash.Load();  // holds the program up
    }
    template <class Widget>
    Widget& at(const char* name) {
        return *windows.window(login)->findChild<Widget*>(QString::fromLatin1(name));
    }
    // Runs one step of the program, and all that it leaves to do.
    void run(const Loop::Handler& step) {
        bool done = false;
        loop.post(step);
        loop.post([&] { done = true; });
        loop.run([&] { return done; });
        host.serve(std::chrono::milliseconds{0});
    }

    qt::QtLoopHost host;
    Loop loop{host};
    Forms forms{loop};
    Boxes boxes{loop};
    Dialogs& dialogs = boxes;
    qt::QtBoxView boxView{loop, qt::FileDialogs::qts};
    Splash splash{forms};
    Login login{forms};
    qt::QtWindows windows{forms, qt::views()};
};

}  // namespace

TEST_F(WindowsTest, AWindowFollowsItsForm) {
    login.Load();
    EXPECT_EQ(windows.window(login), nullptr);
    login.Show();
    QPointer<QWidget> window = windows.window(login);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Velmora Login"));
    login.Caption = "Other";
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Other"));
    login.setWindowState(WindowStates::minimised);
    EXPECT_TRUE(window->isMinimized());
    login.setWindowState(WindowStates::normal);
    EXPECT_FALSE(window->isMinimized());
    login.Hide();
    EXPECT_FALSE(window->isVisible());
    login.txtPassword.Text = "kept";
    login.Show();
    EXPECT_EQ(window, windows.window(login));
    run([&] { login.Unload(); });
    EXPECT_FALSE(window);
    login.Show();
    EXPECT_EQ(at<QLineEdit>("txtPassword").text(), QString());
}

TEST_F(WindowsTest, TheSplashTakesNoFocusAndTheLoginCanBeUsedByKeyboardAlone) {
    splash.Show();
    EXPECT_TRUE(windows.window(splash)->testAttribute(Qt::WA_ShowWithoutActivating));

    login.Show();
    QWidget* window = windows.window(login);
    host.serve(std::chrono::milliseconds{0});  // the window becomes the active one
    int logins = 0;
    login.onOK = [&] {
        ++logins;
        login.txtPassword.SetFocus();
        login.txtPassword.selectAll();
    };
    QTest::keyClicks(window->focusWidget(), QStringLiteral("Ann"));
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    QTest::keyClicks(window->focusWidget(), QStringLiteral("old"));
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(login.txtUserName.mainValue(), "Ann");
    EXPECT_EQ(logins, 1);
    QTest::keyClicks(window->focusWidget(), QStringLiteral("new"));
    EXPECT_EQ(login.txtPassword.mainValue(), "new");
    QTest::keyClick(window->focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(login.alive());
}

TEST_F(WindowsTest, AFormMayGoAndComeBackDuringAClickInItsWindowWhileTheProgramWaits) {
    login.Show();
    QPointer<QWidget> old = windows.window(login);
    bool arrived = false;
    login.onOK = [&] {
        login.Unload();
        host.postFromThread([&] { arrived = true; });
        loop.wait([&] { return arrived; });
        EXPECT_TRUE(old) << "the window sent the click that is still under way";
        EXPECT_FALSE(old->isVisible());
        login.Show();
    };
    QAbstractButton& button = at<QAbstractButton>("cmdOK");
    loop.post([&] { QTest::mouseClick(&button, Qt::LeftButton); });
    loop.run([&] { return !old; });
    EXPECT_TRUE(arrived);
    login.cmdOK.Caption = "Again";
    EXPECT_EQ(at<QAbstractButton>("cmdOK").text(), QStringLiteral("Again"));
}

TEST_F(WindowsTest, TheCloseBoxUnloadsTheForm) {
    login.Show();
    QPointer<QWidget> window = windows.window(login);
    run([&] { EXPECT_FALSE(window->close()); });
    EXPECT_FALSE(login.alive());
    EXPECT_FALSE(window);
}

TEST_F(WindowsTest, AMenuShowsWhatIsVisibleWhenItOpens) {
    bool clicked = false;
    login.mnuJokes.Click.connect([&] {
        clicked = true;
        login.PopupMenu(login.MnuMain);
    });
    login.PopupMenu(login.MnuMain);
    QPointer<QMenu> menu = windows.menus().opened();
    ASSERT_TRUE(menu->isVisible());
    std::vector<std::string> names;
    for (const QAction* action : menu->actions()) names.push_back(action->objectName().toStdString());
    EXPECT_THAT(names, ElementsAre("mnuBar_0", "mnuJokes", "mnuBar_1", "mnuTools", "mnuBar_2", "mnuEmpty"));
    EXPECT_TRUE(menu->separatorsCollapsible());
    EXPECT_TRUE(menu->actions()[1]->isChecked());
    EXPECT_FALSE(menu->actions()[3]->menu()->actions()[0]->isEnabled());
    EXPECT_FALSE(menu->actions()[5]->isEnabled());

    login.mnuJokes.Checked = false;
    run([&] { QTest::keyClick(menu, 'j'); });
    EXPECT_TRUE(clicked);
    EXPECT_FALSE(menu);
    ASSERT_TRUE(windows.menus().opened()->isVisible());
    EXPECT_FALSE(windows.menus().opened()->actions()[1]->isChecked());
    QTest::keyClick(windows.menus().opened(), Qt::Key_Escape);
    EXPECT_FALSE(windows.menus().opened()->isVisible());
}

TEST_F(WindowsTest, BoxesNestAndTheNewestIsAnsweredFirst) {
    std::vector<std::string> order;
    loop.post([&] {
        EXPECT_EQ(dialogs.MsgBox("<i>first</i>", "One"), BoxAnswer::ok);
        order.push_back("first");
    });
    loop.post([&] {
        EXPECT_EQ(dialogs.MsgBox("second", "Two", BoxIcon::question, BoxButtons::yesNo), BoxAnswer::no);
        order.push_back("second");
        loop.post([&] { boxView.window(*boxes.newest())->close(); });
    });
    loop.post([&] {
        auto* box = qobject_cast<QMessageBox*>(boxView.window(*boxes.newest()));
        EXPECT_EQ(box->icon(), QMessageBox::Question);
        EXPECT_EQ(box->textFormat(), Qt::PlainText);
        QTest::keyClick(box, Qt::Key_Escape);
    });
    loop.run([&] { return order.size() == 2; });
    EXPECT_THAT(order, ElementsAre("second", "first"));
}

TEST_F(WindowsTest, TheEndOfTheProgramTakesAnOpenBoxWithIt) {
    login.Show();
    QPointer<QWidget> box;
    login.onOK = [&] { dialogs.MsgBox("Waiting", "Box"); };
    loop.post([&] { QTest::mouseClick(&at<QAbstractButton>("cmdOK"), Qt::LeftButton); });
    loop.post([&] {
        box = boxView.window(*boxes.newest());
        login.Unload();
        splash.Unload();
    });
    loop.run();
    EXPECT_EQ(boxes.newest(), nullptr);
    host.serve(std::chrono::milliseconds{0});
    EXPECT_FALSE(box);
}

TEST_F(WindowsTest, AFileDialogGivesThePathWithItsExtensionOrNothing) {
    const QString folder = QDir::tempPath();
    const auto answer = [&](const QString& name, bool accept) {
        loop.post([&, name, accept] {
            auto* dialog = qobject_cast<QFileDialog*>(boxView.window(*boxes.newest()));
            dialog->setDirectory(folder);
            dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
            QDialog& base = *dialog;
            accept ? base.accept() : base.reject();
        });
    };
    std::optional<std::string> saved;
    std::optional<std::string> cancelled = "not asked";
    run([&] {
        answer(QStringLiteral("velmora-no-such-script"), true);
        saved = boxes.saveFile("Save", std::string("Scripts\0*.vls\0"sv), "vls");
        answer({}, false);
        cancelled = boxes.openFile("Open", std::string("All\0*.*\0"sv));
    });
    EXPECT_EQ(saved, QDir(folder).filePath(QStringLiteral("velmora-no-such-script.vls")).toStdString());
    EXPECT_EQ(cancelled, std::nullopt);
    EXPECT_EQ(qt::nameFilters("Text (*.txt)\0*.txt;*.log\0All\0*.*\0Programs\0*.exe\0\0"sv),
              QStringList({QStringLiteral("Text (*.txt *.log)"), QStringLiteral("All (*)"),
                           QStringLiteral("Programs (*)")}));
}
