#include "platform/qt/focused_rows.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

using testing::ElementsAre;

class FocusedRowsTest : public testing::Test {
protected:
    FocusedRowsTest() { qApp->installEventFilter(&rows_); }

    template <class Widget>
    Widget& add() {
        auto* widget = new Widget;
        layout_.addWidget(widget);
        return *widget;
    }
    void show() {
        window_.show();
        QApplication::setActiveWindow(&window_);
        other_.setFocus();
        settle();
    }
    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    std::vector<QString> focused;
    QWidget window_;
    QVBoxLayout layout_{&window_};
    QLineEdit other_{&window_};

private:
    velmora::qt::FocusedRows rows_{[this](QAccessibleEvent* event) {
        EXPECT_EQ(event->type(), QAccessible::Focus);
        focused.push_back(event->accessibleInterface()->text(QAccessible::Name));
    }};
};

TEST_F(FocusedRowsTest, AClosedComboBoxTellsItsChoiceWhenItHasTheFocusOnly) {
    auto& box = add<QComboBox>();
    box.addItems({QStringLiteral("100 %"), QStringLiteral("150 %"), QStringLiteral("200 %")});
    show();
    box.setCurrentIndex(1);
    EXPECT_THAT(focused, ElementsAre());
    box.setFocus();
    settle();
    box.setCurrentIndex(2);
    other_.setFocus();
    box.setCurrentIndex(0);
    EXPECT_THAT(focused, ElementsAre(QStringLiteral("150 %"), QStringLiteral("200 %")));
}

TEST_F(FocusedRowsTest, AListATreeAndACalendarTellWhereTheFocusIsWhenItComes) {
    auto& list = add<QListWidget>();
    list.addItems({QStringLiteral("Genie"), QStringLiteral("Merlin")});
    list.setCurrentRow(1);
    auto& tree = add<QTreeWidget>();
    auto* mail = new QTreeWidgetItem(&tree, {QStringLiteral("Mail")});
    tree.setCurrentItem(new QTreeWidgetItem(mail, {QStringLiteral("Unread")}));
    tree.expandAll();
    auto& calendar = add<QCalendarWidget>();
    calendar.setSelectedDate(QDate(2026, 11, 21));
    add<QListWidget>();
    show();
    for (QWidget* each : {static_cast<QWidget*>(&list), static_cast<QWidget*>(&tree),
                          static_cast<QWidget*>(&calendar), layout_.itemAt(3)->widget()}) {
        each->setFocus();
        settle();
    }
    EXPECT_THAT(focused,
                ElementsAre(QStringLiteral("Merlin"), QStringLiteral("Unread"), QStringLiteral("21")));
}

}  // namespace
