#include <gmock/gmock.h>

#include <QApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QTemporaryFile>
#include <climits>

#include "agent/qt/nearest_screen.h"
#include "agent/qt/qt_character.h"

// Two screens of different size side by side, with corners of the desktop between them that are on neither:
// the first is 1000 x 700 at 0, 0, the other 600 x 400 at 1000, 300.

namespace {

using namespace agent;

TEST(Screens, APointOnNoneBelongsToTheNearest) {
    const auto screens = QGuiApplication::screens();
    ASSERT_EQ(screens.size(), 2);
    for (const auto& [point, index] : {std::pair{QPoint(10, 10), 0},
                                       {QPoint(1500, 500), 1},
                                       {QPoint(1400, 290), 1},  // above the smaller one
                                       {QPoint(1010, 20), 0},
                                       {QPoint(-500, 5000), 0},
                                       {QPoint(INT_MAX / 2, 300), 1}})
        EXPECT_EQ(nearestScreen(point), screens[index]) << point.x() << " " << point.y();
}

class OnTwoScreens : public testing::Test {
protected:
    void SetUp() override {
        auto loaded = QtCharacter::load(CHARACTERS, "Peedy", {.scale = 1, .position = QPoint(700, 400)});
        figure = std::move(std::get<std::unique_ptr<QtCharacter>>(loaded));
        figure->onPlaced = [this](QPoint corner) { placed = corner; };
        figure->perform({Action::show, {}}, [](bool) {});
    }

    void mouse(QEvent::Type type, QPoint at) {
        QMouseEvent event(type, QPointF(at - figure->window()->pos()), QPointF(at), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(figure->window(), &event);
    }

    std::unique_ptr<QtCharacter> figure;
    QPoint placed;
};

TEST_F(OnTwoScreens, AFigureIsDraggedFromOneToTheOtherAndLetGoWhollyOnIt) {
    struct Case {
        QPoint to;  // of the pointer, which holds the middle of the window
        int screen;
    };
    for (const auto& [to, screen] :
         {Case{{1500, 600}, 1}, {{1590, 310}, 1}, {{20, 20}, 0}, {{1005, 650}, 1}}) {
        const QPoint from = figure->window()->geometry().center();
        mouse(QEvent::MouseButtonPress, from);
        mouse(QEvent::MouseMove, (from + to) / 2);
        EXPECT_EQ(figure->window()->geometry().center(), (from + to) / 2) << "it follows freely";
        mouse(QEvent::MouseMove, to);
        mouse(QEvent::MouseButtonRelease, to);
        const QRect stands(figure->window()->pos(), figure->window()->size());
        EXPECT_EQ(stands.topLeft(), placed);
        EXPECT_TRUE(QGuiApplication::screens()[screen]->availableGeometry().contains(stands))
            << stands.x() << " " << stands.y();
    }
}

TEST_F(OnTwoScreens, AFigureGrowsNoLargerThanTheScreen) {
    figure->setScale(4);
    EXPECT_EQ(figure->window()->height(), 700);
    figure->setScale(3);
    EXPECT_EQ(figure->window()->height(), 600);
}

}  // namespace

int main(int argc, char** argv) {
    QTemporaryFile screens;
    if (!screens.open()) return 2;
    screens.write(R"({"synchronousWindowSystemEvents": false, "windowFrameMargins": false, "screens": [
        {"name": "left", "x": 0, "y": 0, "width": 1000, "height": 700,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "right", "x": 1000, "y": 300, "width": 600, "height": 400,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toUtf8());
    const QApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
