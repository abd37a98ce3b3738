#include "platform/qt/heard_tip.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include "platform/qt/tip_place.h"

namespace {

using velmora::qt::HeardTipWindow;
using velmora::qt::placeTip;

QString textOf(const HeardTipWindow& tip) {
    return tip.findChild<QLabel*>()->text();
}

QRect noFigure() {
    return {};
}

TEST(HeardTip, OffersWhatElseMayHaveBeenMeantAndIsGoneBeforeThePickCounts) {
    HeardTipWindow tip(noFigure);
    bool goneFirst = false;
    tip.tell("open <b>file</b>",
             {{"Messenger", [] { FAIL(); }}, {"Cut & Paste", [&] { goneFirst = tip.isHidden(); }}}, "Or:");
    EXPECT_TRUE(tip.isVisible());
    EXPECT_EQ(textOf(tip), QStringLiteral("open <b>file</b>"));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(tip.findChildren<QLabel*>()[1])->text(QAccessible::Name),
              QStringLiteral("Or: Messenger, Cut & Paste"));
    const auto buttons = tip.findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[1]->text(), QStringLiteral("Cut && Paste"));
    buttons[1]->click();
    EXPECT_TRUE(goneFirst);
}

TEST(HeardTip, IsWorkedByKeyboardOnceThatIsBroughtToIt) {
    HeardTipWindow tip(noFigure);
    int picked = 0;
    tip.tell("mail", {{"Check Mail", [&] { picked = 1; }}, {"New Mail", [&] { picked = 2; }}}, {});
    tip.takeKeyboard();
    QTest::keyClick(&tip, Qt::Key_Down);
    QTest::keyClick(&tip, Qt::Key_Return);
    EXPECT_EQ(picked, 2);
    tip.tell("mail", {{"Check Mail", [] { FAIL(); }}}, {});
    tip.takeKeyboard();
    QTest::keyClick(&tip, Qt::Key_Escape);
    EXPECT_FALSE(tip.isVisible());
}

TEST(HeardTip, ANewTextTakesThePlaceOfTheOldOneAndItsChoices) {
    HeardTipWindow tip(noFigure);
    tip.tell("check mail", {{"New Mail", [] {}}}, "Or:");
    const int before = tip.height();
    tip.tellListening({});
    EXPECT_NE(textOf(tip), QStringLiteral("check mail"));
    EXPECT_LT(tip.height(), before);
    for (const auto* button : tip.findChildren<QPushButton*>()) EXPECT_TRUE(button->isHidden());
}

TEST(HeardTip, AClickOnItClosesItAndIsToldOf) {
    HeardTipWindow tip(noFigure);
    int dismissed = 0;
    tip.onDismissed = [&] { ++dismissed; };
    tip.tellListening("Or hold F9 while you speak.");
    QTest::mouseClick(&tip, Qt::LeftButton);
    EXPECT_FALSE(tip.isVisible());
    EXPECT_EQ(dismissed, 1);
}

TEST(HeardTip, FollowsTheFigureAndNeverLeavesTheScreen) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QRect figure(screen.center(), QSize(100, 100));
    HeardTipWindow tip([&] { return figure; });
    tip.tellListening({});
    EXPECT_GT(tip.y(), figure.bottom());
    figure.moveBottomRight(screen.bottomRight() + QPoint(30, 30));
    tip.follow();
    EXPECT_TRUE(screen.contains(tip.geometry()));
    EXPECT_FALSE(tip.geometry().intersects(figure));
}

TEST(TipPlace, IsBelowTheFigureElseBesideItElseAboveAndInTheCornerWithoutAFigure) {
    const QRect screen(0, 0, 1000, 800);
    const QSize size(200, 50);
    const struct {
        QRect figure;
        QPoint corner;
    } cases[] = {
        {{400, 300, 100, 100}, {350, 406}},  // below
        {{0, 300, 100, 100}, {0, 406}},      // below, moved onto the screen
        {{400, 700, 100, 100}, {194, 725}},  // at its left
        {{0, 700, 100, 100}, {106, 725}},    // at its right
        {{0, 200, 1000, 600}, {400, 144}},   // above
        {{}, {775, 725}},                    // no figure
    };
    for (const auto& c : cases) {
        const QPoint corner = placeTip(c.figure, size, screen);
        EXPECT_EQ(corner, c.corner) << corner.x() << "," << corner.y();
        EXPECT_TRUE(screen.contains(QRect(corner, size)));
    }
    EXPECT_EQ(placeTip(screen, QSize(5000, 5000), screen), QPoint(0, 0)) << "larger than the screen";
}

}  // namespace
