#include "agent/qt/balloon.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QPalette>
#include <QScreen>
#include <algorithm>
#include <chrono>

#include "agent/qt/balloon_place.h"
#include "agent/qt/balloon_text.h"
#include "agent/qt/shown_line.h"

namespace {

using namespace agent;

TEST(BalloonPlace, StandsAboveElseBesideElseBelowAndAlwaysOnTheScreen) {
    const QRect screen(0, 0, 1000, 800);
    const QSize size(300, 100);
    struct Case {
        QRect figure;
        TailSide side;
    };
    const std::vector<Case> cases = {
        {{400, 400, 200, 200}, TailSide::bottom}, {{0, 700, 100, 100}, TailSide::bottom},
        {{400, 50, 200, 200}, TailSide::left},    {{800, 0, 200, 200}, TailSide::right},
        {{250, 0, 500, 200}, TailSide::top},      {{0, 0, 1000, 800}, TailSide::bottom}};
    for (const auto& c : cases) {
        const auto place = placeBalloon(c.figure, {size, size}, 16, screen);
        EXPECT_EQ(place.side, c.side) << c.figure.x() << "," << c.figure.y();
        EXPECT_TRUE(screen.contains(place.body));
        EXPECT_EQ(place.body.intersects(c.figure), c.figure == screen);
    }
    const QSize large(2000, 2000);
    EXPECT_EQ(placeBalloon({400, 400, 200, 200}, {large, large}, 16, screen).body.topLeft(), QPoint(0, 0));
}

TEST(BalloonPlace, OneThatGrowsKeepsItsSide) {
    const QRect screen(0, 0, 1000, 800);
    const QSize later(300, 500);
    for (const QRect figure :
         {QRect(400, 550, 200, 200), QRect(400, 300, 200, 200), QRect(750, 300, 200, 200)}) {
        const auto end = placeBalloon(figure, {later, later}, 16, screen);
        for (int height = 60; height < 500; height += 20) {
            const auto place = placeBalloon(figure, {QSize(300, height), later}, 16, screen);
            EXPECT_EQ(place.side, end.side);
            EXPECT_EQ(place.tip, end.tip);
            EXPECT_TRUE(end.body.contains(place.body));
        }
    }
}

TEST(ShownLine, DrawsNoControlCharacterButLineEnds) {
    const auto shown = toShown(parseSpeech("a\tb\r\nc\rd\ne\x1b[0m\x07 \x7f\xc2\x85."));
    EXPECT_EQ(shown.text, QStringLiteral("a b\u2028c\u2028d\u2028e[0m ."));
    EXPECT_EQ(shown.wordEnds.back(), shown.text.size());
}

TEST(ShownLine, WordsEndWhereTheyAreShownInEitherEncoding) {
    for (const char* text : {"\xc3\xa9t\xc3\xa9 x", "\xe9t\xe9 x"}) {
        const auto shown = toShown(parseSpeech(text));
        EXPECT_EQ(shown.text, QStringLiteral("\u00e9t\u00e9 x"));
        EXPECT_EQ(shown.wordEnds, (std::vector<qsizetype>{3, 5}));
    }
}

QImage drawn(const BalloonText& text) {
    QImage image(text.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    text.draw(painter, Qt::black);
    return image;
}

TEST(BalloonText, RevealsWordsGrowsWithThemAndThenScrolls) {
    QString line;
    for (int i = 0; i < 3000; ++i) line += QStringLiteral("word%1 ").arg(i);
    BalloonText text;
    text.set(line, QApplication::font(), {200, 300});
    EXPECT_EQ(text.finalSize().height(), 300);
    EXPECT_LT(text.size().height(), 150);
    int height = text.size().height();
    for (qsizetype end = 0; end < 700; end += 10) {
        text.reveal(end);
        EXPECT_GE(text.size().height(), height);
        height = text.size().height();
    }
    EXPECT_EQ(height, 300);
    text.set(line, QApplication::font(), {200, 60});
    const QImage empty = drawn(text);
    text.reveal(5);
    const QImage first = drawn(text);
    EXPECT_NE(empty, first);
    for (qsizetype end = 10; end < line.size(); end += 500) {
        text.reveal(end);
        EXPECT_NE(drawn(text), empty);
    }
    text.reveal(line.size());
    EXPECT_NE(drawn(text), first);
}

TEST(BalloonText, TakesAWordOfAnyLengthAndNoText) {
    BalloonText text;
    text.set(QString(1'000'000, u'm'), QApplication::font(), {200, 300});
    text.reveal(1'000'000);
    EXPECT_LE(text.size().width(), 200);
    text.set({}, QApplication::font(), {200, 300});
    text.reveal(0);
    EXPECT_LE(text.size().height(), 300);
}

TEST(BalloonWindow, NeverTakesMoreThanMostOfTheScreen) {
    Balloon balloon;
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const QString line = QStringLiteral("many words ").repeated(2000);
    balloon.open(BalloonKind::thought, line, {}, {screen.center(), QSize(100, 100)});
    EXPECT_TRUE(balloon.isVisible());
    EXPECT_LT(balloon.height(), screen.height() / 4);
    balloon.reveal(line.size() / 2);
    EXPECT_GT(balloon.height(), screen.height() / 2);
    EXPECT_LE(balloon.height(), screen.height() * 7 / 10);
    EXPECT_TRUE(screen.contains(balloon.geometry().adjusted(1, 1, -1, -1)));
}

TEST(BalloonWindow, IsToScreenReadersANotificationOfTheSpeakersThatHoldsTheLine) {
    Balloon balloon;
    const QRect figure(QGuiApplication::primaryScreen()->geometry().center(), QSize(100, 100));
    for (const auto& line : {QStringLiteral("Morning"), QStringLiteral("Mail?")}) {
        balloon.open(BalloonKind::speech, line, QStringLiteral("Merlin says"), figure);
        const auto* notice = QAccessible::queryAccessibleInterface(&balloon);
        EXPECT_EQ(notice->role(), QAccessible::Notification);
        EXPECT_EQ(notice->text(QAccessible::Name), QStringLiteral("Merlin says"));
        ASSERT_EQ(notice->childCount(), 1);
        EXPECT_EQ(notice->child(0)->role(), QAccessible::StaticText);  // the only kind that is read along
        EXPECT_EQ(notice->child(0)->text(QAccessible::Name), line);
        EXPECT_FALSE(notice->child(0)->state().invisible);
    }
}

TEST(BalloonWindow, FollowsAThemeOfHighContrastOnly) {
    const QPalette before = QApplication::palette();
    const QRect figure(QGuiApplication::primaryScreen()->geometry().center(), QSize(100, 100));
    const auto paperOn = [&](const QColor& window, const QColor& text) {
        QApplication::setPalette(QPalette(text, window, window, window, window, text, text, window, window));
        Balloon balloon;
        balloon.open(BalloonKind::speech, QStringLiteral("x"), {}, figure);
        return balloon.grab().toImage().pixelColor(balloon.width() / 2, 6);
    };
    EXPECT_EQ(paperOn(Qt::black, Qt::white), QColor(Qt::black));
    EXPECT_GT(paperOn(QColor(49, 54, 59), QColor(239, 240, 241)).lightness(), 200);
    EXPECT_GT(paperOn(Qt::white, Qt::black).lightness(), 200);
    QApplication::setPalette(before);
}

// The columns of an image that hold something dark.
std::pair<int, int> inked(const QImage& image) {
    int first = image.width();
    int last = -1;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (qGray(image.pixel(x, y)) > 128) continue;
            first = std::min(first, x);
            last = x;
        }
    }
    return {first, last};
}

TEST(BalloonText, WhatIsWrittenFromRightToLeftGrowsFromTheRight) {
    BalloonText text;
    const QString line = QStringLiteral("\u05e9\u05dc\u05d5\u05dd \u05dc\u05da \u05d9\u05d3\u05d9\u05d3");
    text.set(line, QApplication::font(), {400, 100});
    text.reveal(4);
    const auto [first, last] = inked(drawn(text));
    EXPECT_GT(first, text.size().width() / 3);
    EXPECT_GT(last, text.size().width() - 5);
    text.reveal(line.size());
    EXPECT_LT(inked(drawn(text)).first, 5);
}

TEST(BalloonText, AMillionWordsAreLaidOutAsFarAsTheyAreShown) {
    const QString line = QStringLiteral("wonder ").repeated(1'000'000);
    BalloonText text;
    text.set(line, QApplication::font(), {300, 200});
    const auto start = std::chrono::steady_clock::now();
    for (qsizetype end = 0; end < 70'000; end += 7) text.reveal(end);
    text.reveal(line.size());
    // All of it would be 7,000,000 letters in some 150,000 lines.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_NE(inked(drawn(text)).second, -1);
}

}  // namespace
