#include "platform/qt/binder.h"

#include <gmock/gmock.h>

#include <QCalendarWidget>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "platform/controls.h"
#include "platform/list_controls.h"
#include "platform/qt/qt_loop_host.h"

using namespace velmora;
using namespace std::chrono;  // dates
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class FrmAll : public Form {
public:
    explicit FrmAll(Forms& forms) : Form(forms, "FrmAll", "All kinds") {
        for (Event* event : {&cmd.Click, &pic.Click, &txt.Change, &txtPass.Change, &txtLong.Change,
                             &chk.Click, &optA.Click, &optB.Click, &combo.Change, &date.Change, &time.Change,
                             &month.Change, &lst.Click, &tree.Click, &icb.Click, &tabs.Click, &combo.Click}) {
            event->connect([this] { ++raised; });
        }
    }

    Label lbl{*this, "lbl", {.Caption = "&Text:"}};
    Button cmd{*this, "cmd", {.Caption = "&Go"}};
    Picture pic{*this, "pic", {.Caption = "A wizard"}};
    TextBox txt{*this, "txt"};
    TextBox txtPass{*this, "txtPass", {.Password = true}};
    TextBox txtLong{*this, "txtLong", {.MultiLine = true}};
    CheckBox chk{*this, "chk", {.Caption = "Check"}};
    OptionButton optA{*this, "opt", {.Caption = "A"}, 0};
    OptionButton optB{*this, "opt", {.Caption = "B"}, 1};
    Frame fra{*this, "fra", {.Caption = "Frame"}};
    ComboBox combo{*this, "combo", {.List = {"one", "two", "three"}}};
    StatusBar bar{*this, "bar"};
    DTPicker date{*this, "date"};
    DTPicker time{*this, "time", {.Shows = PickerKind::time}};
    MonthView month{*this, "month"};
    ListView lst{
        *this, "lst", {.Rows = {{.Key = "a", .Text = "A", .SubItems = {"1"}}, {.Key = "b", .Text = "B"}}}};
    TreeView tree{
        *this, "tree", {.Rows = {{.Key = "root", .Text = "Root"}, {.Text = "Leaf", .Parent = "root"}}}};
    ImageCombo icb{*this, "icb", {.Rows = {{.Text = "first"}, {.Text = "second"}}}};
    TabStrip tabs{*this, "tabs", {.Rows = {{.Text = "One"}, {.Text = "Two"}}}};
    Timer tmr{*this, "tmr"};
    int raised = 0;
};

struct BinderTest : testing::Test {
    BinderTest() {
        host.carry(&loop);
        form.Load();
        add<QLabel>("lbl")->setBuddy(add<QLineEdit>("txt"));
        add<QPushButton>("cmd");
        add<QToolButton>("pic");
        add<QLineEdit>("txtPass")->setToolTip(QStringLiteral("Secret"));
        add<QPlainTextEdit>("txtLong");
        add<QCheckBox>("chk");
        add<QRadioButton>("opt_0");
        add<QRadioButton>("opt_1");
        add<QGroupBox>("fra");
        add<QComboBox>("combo");
        add<QStatusBar>("bar");
        add<QDateEdit>("date")->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
        add<QTimeEdit>("time")->setDisplayFormat(QStringLiteral("HH:mm:ss"));
        add<QCalendarWidget>("month");
        add<QTreeView>("lst");
        add<QTreeView>("tree");
        add<QComboBox>("icb");
        add<QTabBar>("tabs");
        binder.emplace(form, window, loop);
        window.resize(500, 900);
        window.show();
        settle();
    }

    // Lets what has been gathered appear.
    void settle() { host.serve(std::chrono::milliseconds{0}); }

    template <class Widget>
    Widget* add(const char* name) {
        auto* widget = new Widget(&window);
        widget->setObjectName(QString::fromLatin1(name));
        layout->addWidget(widget);
        return widget;
    }
    template <class Widget>
    Widget& at(const char* name) {
        return *window.findChild<Widget*>(QString::fromLatin1(name));
    }

    qt::QtLoopHost host;
    Loop loop{host};
    Forms forms{loop};
    FrmAll form{forms};
    QWidget window;
    QVBoxLayout* layout = new QVBoxLayout(&window);
    std::optional<qt::Binder> binder;
};

}  // namespace

TEST_F(BinderTest, EveryControlFindsItsWidgetAndEveryWidgetItsControl) {
    EXPECT_THAT(binder->unbound(), IsEmpty());
    at<QCheckBox>("chk").setObjectName(QStringLiteral("chkOther"));
    EXPECT_THAT(qt::Binder(form, window, loop).unbound(), ElementsAre("chk", "chkOther"));
}

TEST_F(BinderTest, EveryKindShowsWhatTheProgramSetsAndRaisesOnlyWhatTheKindDoes) {
    form.lbl.Caption = "<b>&Name</b>";
    form.cmd.Caption = "&Stop";
    form.pic.Caption = "A witch";
    form.bar.Text = "Ready";
    form.fra.Caption = "Group";
    form.date.Value = DateTime{2024y / February / 29, 0s};
    form.time.Value = DateTime{DateTime::dayZero, 23h + 59min + 58s};
    form.month.Value = DateTime{1999y / December / 31, 0s};
    form.icb.Selected = 2;
    form.tabs.Selected = 2;
    form.lst.ListItems().Add({.Key = "c", .Text = "C"});
    form.lst.Selected = 3;
    form.tree.Selected = 2;
    form.combo.AddItem("four");
    form.combo.setList(0, "uno");
    settle();
    EXPECT_EQ(form.raised, 0);
    form.txt.Text = "caf\xe9";
    form.txtPass.Text = "secret";
    form.txtLong.Text = "one\r\ntwo";
    form.chk.Value = 1;
    form.optB.Value = true;
    form.combo.setListIndex(3);
    settle();
    EXPECT_EQ(form.raised, 6);

    EXPECT_EQ(at<QLabel>("lbl").text(), QStringLiteral("<b>&Name</b>"));
    EXPECT_EQ(at<QLabel>("lbl").textFormat(), Qt::PlainText);
    EXPECT_EQ(at<QPushButton>("cmd").text(), QStringLiteral("&Stop"));
    EXPECT_EQ(at<QToolButton>("pic").accessibleName(), QStringLiteral("A witch"));
    EXPECT_EQ(at<QStatusBar>("bar").currentMessage(), QStringLiteral("Ready"));
    EXPECT_EQ(at<QGroupBox>("fra").title(), QStringLiteral("Group"));
    EXPECT_EQ(at<QDateEdit>("date").date(), QDate(2024, 2, 29));
    EXPECT_EQ(at<QTimeEdit>("time").time(), QTime(23, 59, 58));
    EXPECT_EQ(at<QCalendarWidget>("month").selectedDate(), QDate(1999, 12, 31));
    EXPECT_EQ(at<QComboBox>("icb").currentText(), QStringLiteral("second"));
    EXPECT_EQ(at<QTabBar>("tabs").currentIndex(), 1);
    EXPECT_EQ(at<QTreeView>("lst").currentIndex().data(), QStringLiteral("C"));
    EXPECT_EQ(at<QTreeView>("tree").currentIndex().parent().data(), QStringLiteral("Root"));
    EXPECT_EQ(at<QLineEdit>("txt").text(), QStringLiteral(u"café"));
    EXPECT_EQ(at<QLineEdit>("txtPass").displayText(), QStringLiteral("******"));
    EXPECT_EQ(at<QPlainTextEdit>("txtLong").toPlainText(), QStringLiteral("one\ntwo"));
    EXPECT_TRUE(at<QCheckBox>("chk").isChecked());
    EXPECT_TRUE(at<QRadioButton>("opt_1").isChecked());
    EXPECT_EQ(at<QComboBox>("combo").currentText(), QStringLiteral("four"));
    EXPECT_EQ(at<QComboBox>("combo").itemText(0), QStringLiteral("uno"));

    form.optB.Value = false;
    EXPECT_FALSE(at<QRadioButton>("opt_1").isChecked());
    form.cmd.Enabled = false;
    form.fra.Visible = false;
    form.cmd.ToolTipText = "<b>Stop</b>";
    EXPECT_FALSE(at<QPushButton>("cmd").isEnabled());
    EXPECT_TRUE(at<QGroupBox>("fra").isHidden());
    EXPECT_EQ(at<QPushButton>("cmd").toolTip(), QStringLiteral("&lt;b&gt;Stop&lt;/b&gt;"));
}

TEST_F(BinderTest, EveryKindTellsOnceWhatAPersonDoes) {
    const auto clickRow = [this](const char* name, const QModelIndex& index) {
        auto& view = at<QTreeView>(name);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(index).center());
    };
    struct Case {
        const char* name;
        std::function<void()> act;
        std::function<std::string()> value;
        std::string_view expected;
    };
    const Case cases[]{
        {"button", [&] { QTest::mouseClick(&at<QPushButton>("cmd"), Qt::LeftButton); }, [] { return ""; },
         ""},
        {"picture", [&] { QTest::keyClick(&at<QToolButton>("pic"), Qt::Key_Space); }, [] { return ""; }, ""},
        {"text", [&] { QTest::keyClick(&at<QLineEdit>("txt"), 'x'); }, [&] { return form.txt.mainValue(); },
         "x"},
        {"lines", [&] { QTest::keyClick(&at<QPlainTextEdit>("txtLong"), 'y'); },
         [&] { return form.txtLong.mainValue(); }, "y"},
        {"check box", [&] { QTest::keyClick(&at<QCheckBox>("chk"), Qt::Key_Space); },
         [&] { return form.chk.mainValue(); }, "1"},
        {"option", [&] { at<QRadioButton>("opt_1").click(); }, [&] { return form.optB.mainValue(); }, "True"},
        {"option by key",
         [&] {
             at<QRadioButton>("opt_1").setFocus();
             QTest::keyClick(&at<QRadioButton>("opt_1"), Qt::Key_Up);
         },
         [&] { return form.optA.mainValue() + form.optB.mainValue(); }, "TrueFalse"},
        {"combo row", [&] { QTest::keyClick(&at<QComboBox>("combo"), Qt::Key_Down); },
         [&] { return form.combo.mainValue(); }, "one"},
        {"combo text", [&] { QTest::keyClick(at<QComboBox>("combo").lineEdit(), 's'); },
         [&] { return form.combo.mainValue() + std::to_string(form.combo.ListIndex()); }, "ones-1"},
        {"date", [&] { at<QDateEdit>("date").stepUp(); }, [&] { return form.date.mainValue(); },
         "1900-12-30"},
        {"time", [&] { at<QTimeEdit>("time").stepUp(); }, [&] { return form.time.mainValue(); }, "01:00:00"},
        {"list row", [&] { clickRow("lst", at<QTreeView>("lst").model()->index(1, 0)); },
         [&] { return form.lst.mainValue(); }, "B"},
        {"the same row", [&] { clickRow("lst", at<QTreeView>("lst").model()->index(1, 0)); },
         [&] { return form.lst.mainValue(); }, "B"},
        {"row by key", [&] { QTest::keyClick(&at<QTreeView>("lst"), Qt::Key_Up); },
         [&] { return form.lst.mainValue(); }, "A"},
        {"node", [&] { clickRow("tree", at<QTreeView>("tree").model()->index(0, 0)); },
         [&] { return form.tree.mainValue(); }, "Root"},
        {"image combo", [&] { QTest::keyClick(&at<QComboBox>("icb"), Qt::Key_Down); },
         [&] { return form.icb.mainValue(); }, "first"},
        {"tab", [&] { QTest::keyClick(&at<QTabBar>("tabs"), Qt::Key_Right); },
         [&] { return form.tabs.mainValue(); }, "Two"},
    };
    for (const Case& each : cases) {
        form.raised = 0;
        each.act();
        settle();
        EXPECT_EQ(form.raised, 1) << each.name;
        EXPECT_EQ(each.value(), each.expected) << each.name;
    }
    form.raised = 0;
    at<QCalendarWidget>("month").setFocus();
    QTest::keyClick(
        at<QCalendarWidget>("month").findChild<QWidget*>(QStringLiteral("qt_calendar_calendarview")),
        Qt::Key_Left);
    EXPECT_EQ(form.raised, 1);
    EXPECT_EQ(form.month.mainValue(), "1899-12-29");
}

TEST_F(BinderTest, AProgramThatChangesTheTextWhileItIsTypedLeavesTheCursorWhereItIs) {
    form.txt.Change.connect([this] {
        std::string text = form.txt.Text;
        for (char& letter : text)
            letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
        form.txt.Text = text;
    });
    auto& edit = at<QLineEdit>("txt");
    form.txt.Text = "wizrd";
    edit.setCursorPosition(3);
    QTest::keyClicks(&edit, QStringLiteral("aa"));
    EXPECT_EQ(form.txt.mainValue(), "WIZAARD");
    EXPECT_EQ(edit.text(), QStringLiteral("WIZAARD"));
    EXPECT_EQ(edit.cursorPosition(), 5);
}

TEST_F(BinderTest, SelectionsAreBytesInTheControlAndCharactersInTheWidget) {
    auto& edit = at<QLineEdit>("txt");
    form.txt.Text = "\xc3\xa9t\xc3\xa9 fini";
    form.txt.SelStart = 2;
    form.txt.SelLength = 3;
    EXPECT_EQ(edit.selectedText(), QStringLiteral(u"té"));
    edit.setSelection(4, 4);
    EXPECT_EQ(form.txt.SelStart.peek(), 6);
    form.txt.selectAll();
    EXPECT_EQ(edit.selectedText(), QStringLiteral(u"été fini"));
    edit.deselect();
    form.txt.selectAll();
    EXPECT_TRUE(edit.hasSelectedText());
}

TEST_F(BinderTest, ATranscriptGrowsAtItsEndAndWhatIsTypedKeepsItsLineEnds) {
    auto& edit = at<QPlainTextEdit>("txtLong");
    form.txtLong.Text = "one\r\n";
    edit.moveCursor(QTextCursor::End);
    QTest::keyClicks(&edit, QStringLiteral("two"));
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(form.txtLong.mainValue(), "one\r\ntwo\r\n");
    std::string lines;
    for (int line = 0; line < 200; ++line) lines += "line\r\n";
    form.txtLong.Text = lines;
    edit.moveCursor(QTextCursor::Start);
    form.txtLong.Text = form.txtLong.Text.get() + "last";
    EXPECT_EQ(edit.textCursor().position(), 0);
    EXPECT_TRUE(edit.toPlainText().endsWith(QStringLiteral("line\nlast")));
}

TEST_F(BinderTest, ANewTextIsShownFromItsBeginningAndATranscriptToItsEnd) {
    const QScrollBar& bar = *at<QPlainTextEdit>("txtLong").verticalScrollBar();
    const auto lines = [](int count) {
        std::string text;
        for (int line = 0; line < count; ++line) text += "line\r\n";
        return text;
    };
    form.txtLong.Text = lines(200);
    EXPECT_EQ(bar.value(), 0);
    form.txtLong.Text = "";
    for (int count = 1; count < 200; count += 3) form.txtLong.Text = lines(count);
    EXPECT_GT(bar.maximum(), 0);
    EXPECT_EQ(bar.value(), bar.maximum());
}

TEST_F(BinderTest, TypedLinesEndWithBothCharactersUnlessTheTextHasLineFeedsAlone) {
    auto& edit = at<QPlainTextEdit>("txtLong");
    for (const auto& [text, after] : {std::pair{"", "\r\nx"}, {"one\ntwo", "\nxone\ntwo"}}) {
        form.txtLong.Text = text;
        edit.moveCursor(QTextCursor::Start);
        QTest::keyClick(&edit, Qt::Key_Return);
        QTest::keyClicks(&edit, QStringLiteral("x"));
        EXPECT_EQ(form.txtLong.mainValue(), after);
    }
}

TEST_F(BinderTest, ATypedTextThatEqualsARowChoosesNone) {
    QLineEdit& edit = *at<QComboBox>("combo").lineEdit();
    QTest::keyClicks(&edit, QStringLiteral("two"));
    QTest::keyClick(&edit, Qt::Key_Return);
    settle();
    EXPECT_EQ(form.combo.mainValue(), "two");
    EXPECT_EQ(form.combo.ListIndex(), -1);
    EXPECT_EQ(form.raised, 3);
}

TEST_F(BinderTest, TenThousandRowsAreShownOnceAndAPickOfAVanishedRowIsPassedOver) {
    QAbstractItemModel& model = *at<QTreeView>("lst").model();
    int resets = 0;
    QObject::connect(&model, &QAbstractItemModel::modelReset, &window, [&] { ++resets; });
    for (int row = 0; row < 10000; ++row) form.lst.ListItems().Add({.Text = std::to_string(row)});
    EXPECT_EQ(model.rowCount(), 2);
    settle();
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(model.rowCount(), 10002);

    form.lst.ListItems().Remove(1);
    at<QTreeView>("lst").setCurrentIndex(model.index(0, 0));
    EXPECT_EQ(form.raised, 0);
}

TEST_F(BinderTest, ATreeKeepsClosedWhatThePersonClosedAndTakesAnyParentKeys) {
    auto& tree = at<QTreeView>("tree");
    EXPECT_TRUE(tree.isExpanded(tree.model()->index(0, 0)));
    tree.collapse(tree.model()->index(0, 0));
    form.tree.ListItems().Add({.Key = "self", .Text = "Self", .Parent = "self"});
    form.tree.ListItems().Add({.Key = "lost", .Text = "Lost", .Parent = "nobody"});
    form.tree.ListItems().Add({.Text = "Child", .Parent = "lost"});
    settle();
    EXPECT_EQ(tree.model()->rowCount(), 3);
    EXPECT_FALSE(tree.isExpanded(tree.model()->index(0, 0)));
    EXPECT_TRUE(tree.isExpanded(tree.model()->index(2, 0)));
}

TEST_F(BinderTest, ADetachedWindowTellsAndShowsNothingAnyMore) {
    binder->detach();
    at<QPushButton>("cmd").click();
    QTest::keyClicks(&at<QLineEdit>("txt"), QStringLiteral("x"));
    form.cmd.Caption = "Later";
    EXPECT_EQ(form.raised, 0);
    EXPECT_EQ(form.txt.mainValue(), "");
    EXPECT_EQ(at<QPushButton>("cmd").text(), QStringLiteral("&Go"));
}

TEST_F(BinderTest, AFieldWithoutALabelIsNamedByItsToolTip) {
    EXPECT_EQ(at<QLineEdit>("txtPass").accessibleName(), QStringLiteral("Secret"));
    EXPECT_EQ(at<QLineEdit>("txt").accessibleName(), QString());
}

TEST_F(BinderTest, FrameOutOfViewKeepsItsRoomAndReleasesTheButtonThatShowsIt) {
    auto& button = at<QPushButton>("cmd");
    button.setProperty("shows", QStringLiteral("fra"));
    form.fra.Left = 120;
    const QSize size = window.minimumSizeHint();
    for (const int left : {-9000, 120, -9000}) {
        form.fra.Left = left;
        EXPECT_EQ(at<QGroupBox>("fra").isVisible(), left > 0);
        EXPECT_EQ(button.isChecked(), left > 0);
        button.click();  // of itself this would turn it over
        EXPECT_EQ(button.isChecked(), left > 0);
        EXPECT_EQ(window.minimumSizeHint(), size);
    }
    EXPECT_TRUE(form.fra.Visible.get());
    form.fra.Left = 120;
    form.fra.Visible = false;
    EXPECT_FALSE(at<QGroupBox>("fra").isVisible());
}
