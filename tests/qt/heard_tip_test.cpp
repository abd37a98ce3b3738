#include "platform/qt/heard_tip.h"

#include <gtest/gtest.h>

#include <QPushButton>

namespace {

using velmora::qt::HeardTipWindow;

QString textOf(const HeardTipWindow& tip) {
    return tip.findChild<QLabel*>()->text();
}

TEST(HeardTip, OffersWhatElseMayHaveBeenMeantAndIsGoneBeforeThePickCounts) {
    HeardTipWindow tip;
    bool goneFirst = false;
    tip.tell("open <b>file</b>",
             {{"Messenger", [] { FAIL(); }}, {"Cut & Paste", [&] { goneFirst = tip.isHidden(); }}});
    EXPECT_TRUE(tip.isVisible());
    EXPECT_EQ(textOf(tip), QStringLiteral("open <b>file</b>"));
    const auto buttons = tip.findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 2);
    EXPECT_EQ(buttons[1]->text(), QStringLiteral("Cut && Paste"));
    buttons[1]->click();
    EXPECT_TRUE(goneFirst);
}

TEST(HeardTip, ANewTextTakesThePlaceOfTheOldOneAndItsChoices) {
    HeardTipWindow tip;
    tip.tell("check mail", {{"New Mail", [] {}}});
    tip.tellListening();
    EXPECT_NE(textOf(tip), QStringLiteral("check mail"));
    for (const auto* button : tip.findChildren<QPushButton*>()) EXPECT_TRUE(button->isHidden());
}

}  // namespace
