#include "agent/qt/qt_character.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QEventLoop>
#include <QMouseEvent>
#include <QScreen>
#include <QTimer>
#include <chrono>
#include <climits>

namespace {

using namespace agent;
using testing::ElementsAre;

// Says a line when told to.
class FakeVoice : public Voice {
public:
    struct Record {
        std::vector<std::string> lines;
        VoiceEvents events;
        int stops = 0;
    };
    explicit FakeVoice(Record& record) : record_(record) {}
    void speak(SpokenLine line, VoiceEvents events) override {
        record_.lines.push_back(line.shown);
        record_.events = std::move(events);
    }
    void stop() override { ++record_.stops; }

private:
    Record& record_;
};

class QtCharacterTest : public testing::Test {
protected:
    void SetUp() override {
        auto loaded =
            QtCharacter::load(CHARACTERS, "Merlin",
                              {.scale = 0.5,
                               .voice = [this](const CharacterVoice&,
                                               const Post&) { return std::make_unique<FakeVoice>(voice); },
                               .pick = [](std::size_t count) { return count - 1; }});
        ASSERT_TRUE(std::holds_alternative<std::unique_ptr<QtCharacter>>(loaded))
            << std::get<std::string>(loaded);
        character = std::move(std::get<std::unique_ptr<QtCharacter>>(loaded));
        queue = std::make_unique<RequestQueue>(*character, postTo(*character));
        character->onClick = [this](int button, int, int, int) { clicks.push_back(button); };
        character->onPlaced = [this](QPoint corner) { places.push_back(corner); };
        character->onDoubleClick = [this](int button, int, int, int) { doubleClicks.push_back(button); };
    }

    // Turns the event loop until the condition holds; gives up after a time in which all would have ended.
    static bool until(const std::function<bool()>& condition) {
        const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > giveUp) return false;
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }
    static bool ended(const RequestHandle& request) {
        return request->state() != RequestState::pending && request->state() != RequestState::inProgress;
    }
    void show() {
        ASSERT_TRUE(until([shown = queue->ask({Action::show, {}})] { return ended(shown); }));
    }

    void mouse(QEvent::Type type, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF global = at;
        QMouseEvent event(type, global - character->window()->pos(), global, button, button, Qt::NoModifier);
        QCoreApplication::sendEvent(character->window(), &event);
    }

    FakeVoice::Record voice;
    std::vector<int> clicks;
    std::vector<int> doubleClicks;
    std::vector<QPoint> places;
    std::unique_ptr<QtCharacter> character;
    std::unique_ptr<RequestQueue> queue;
};

TEST_F(QtCharacterTest, AppearsSpeaksOneAlternativeAndVanishes) {
    show();
    EXPECT_TRUE(character->onScreen());
    const auto line = queue->ask({Action::speak, "No|\\Map=\"x\"=\"Yes\"\\"});
    ASSERT_TRUE(until([&] { return !voice.lines.empty(); }));
    EXPECT_THAT(voice.lines, ElementsAre("Yes"));
    EXPECT_EQ(line->state(), RequestState::inProgress);
    voice.events.onWord(0);
    voice.events.onMouth(Mouth::A);
    voice.events.onEnd();
    EXPECT_EQ(line->state(), RequestState::complete);
    const auto hidden = queue->ask({Action::hide, {}});
    ASSERT_TRUE(until([&] { return ended(hidden); }));
    EXPECT_FALSE(character->onScreen());
}

TEST_F(QtCharacterTest, TheMouthMovesOverTheGestureThatIsHeld) {
    show();
    const auto line = queue->ask({Action::speak, "Oh"});
    ASSERT_TRUE(until([&] { return !voice.lines.empty(); }));
    const QImage silent = character->picture();
    voice.events.onMouth(Mouth::O);
    EXPECT_NE(character->picture(), silent);
    voice.events.onEnd();
    EXPECT_EQ(line->state(), RequestState::complete);
}

TEST_F(QtCharacterTest, ALineIsSpokenWhileTheWaveGoesOnAndTheNextAnimationWaitsForIt) {
    show();
    const auto wave = queue->ask({Action::play, "Wave"});
    const auto line = queue->ask({Action::speak, "Morning"});
    const auto rest = queue->ask({Action::play, "RestPose"});
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(until([&] { return !voice.lines.empty(); }));
    voice.events.onEnd();
    ASSERT_TRUE(until([&] { return ended(rest); }));
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1900));
    EXPECT_EQ(wave->state(), RequestState::complete);
    EXPECT_EQ(rest->state(), RequestState::complete);
}

TEST_F(QtCharacterTest, StopAllSilencesAndMakesItReadyForTheNextOrder) {
    show();
    queue->ask({Action::speak, "A long story"});
    ASSERT_TRUE(until([&] { return !voice.lines.empty(); }));
    queue->stopAll();
    EXPECT_EQ(voice.stops, 1);
    const auto thought = queue->ask({Action::think, "Hm"});
    const auto lacking = queue->ask({Action::play, "Juggle"});
    ASSERT_TRUE(until([&] { return ended(lacking); }));
    EXPECT_EQ(thought->state(), RequestState::complete);
    EXPECT_EQ(lacking->failure(), refused);
    EXPECT_THAT(voice.lines, ElementsAre("A long story"));
}

TEST_F(QtCharacterTest, AHideThatIsCutLeavesNothingOnScreen) {
    show();
    const auto hidden = queue->ask({Action::hide, {}});
    ASSERT_TRUE(until([&] { return hidden->state() == RequestState::inProgress; }));
    queue->stopAll();
    EXPECT_FALSE(character->onScreen());
    EXPECT_FALSE(queue->visible());
}

TEST_F(QtCharacterTest, MovesAlsoWhileHiddenAndStaysOnTheScreen) {
    const auto moved = queue->ask({Action::moveTo, {}, 40, 50});
    ASSERT_TRUE(until([&] { return ended(moved); }));
    EXPECT_EQ(character->window()->pos(), QPoint(40, 50));
    show();
    const auto away = queue->ask({Action::moveTo, {}, -5000, 60});
    ASSERT_TRUE(until([&] { return ended(away); }));
    EXPECT_EQ(character->window()->pos(), QPoint(0, 60));
}

TEST_F(QtCharacterTest, APressAndMoveDragsAndIsNoClick) {
    show();
    const QPoint at = character->window()->geometry().center();
    const QPoint before = character->window()->pos();
    mouse(QEvent::MouseButtonPress, at);
    mouse(QEvent::MouseMove, at - QPoint(1, 0));
    mouse(QEvent::MouseButtonRelease, at - QPoint(1, 0));
    EXPECT_THAT(clicks, ElementsAre(1));
    EXPECT_EQ(character->window()->pos(), before);
    mouse(QEvent::MouseButtonPress, at);
    mouse(QEvent::MouseMove, at - QPoint(60, 40));
    mouse(QEvent::MouseButtonRelease, at - QPoint(60, 40));
    EXPECT_THAT(clicks, ElementsAre(1));
    EXPECT_EQ(character->window()->pos(), before - QPoint(60, 40));
    EXPECT_THAT(places, ElementsAre(before - QPoint(60, 40)));
}

Balloon* openBalloon() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* balloon = dynamic_cast<Balloon*>(window); balloon != nullptr && balloon->isVisible())
            return balloon;
    }
    return nullptr;
}

TEST_F(QtCharacterTest, TheBalloonGoesWhereTheFigureIsDraggedAndAHiddenFigureSlipsFromTheHand) {
    show();
    queue->ask({Action::speak, "Where to?"});
    ASSERT_TRUE(until([&] { return openBalloon() != nullptr; }));
    const QPoint before = openBalloon()->pos();
    const QPoint at = character->window()->geometry().center();
    mouse(QEvent::MouseButtonPress, at);
    mouse(QEvent::MouseMove, at - QPoint(100, 60));
    ASSERT_NE(openBalloon(), nullptr);
    EXPECT_LT(openBalloon()->y(), before.y());
    queue->stopAll();
    const auto hidden = queue->ask({Action::hide, {}});
    ASSERT_TRUE(until([&] { return ended(hidden); }));
    const QPoint left = character->window()->pos();
    mouse(QEvent::MouseMove, at - QPoint(200, 200));
    EXPECT_EQ(character->window()->pos(), left);
}

TEST_F(QtCharacterTest, GrowsFromItsFeetAndStaysOnTheScreenAtAnyScale) {
    show();
    const QRect before = character->window()->geometry();
    const QRect screen = character->window()->screen()->availableGeometry();
    for (const double scale : {1.0, 2.0, 3.0, 1e9, 0.5}) {
        character->setScale(scale);
        const QRect window(character->window()->pos(), character->window()->size());
        EXPECT_EQ(character->picture().width(), window.width());
        EXPECT_GE(window.left(), screen.left());
        EXPECT_GE(window.top(), screen.top());
    }
    EXPECT_EQ(character->window()->size(), before.size());
}

TEST(QtCharacterPlace, BeginsWhereItIsToldToIfThatIsOnAScreen) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const QPoint wanted : {QPoint(11, 22), QPoint(-9'000, 99'999), QPoint(INT_MAX, INT_MIN)}) {
        auto loaded = QtCharacter::load(CHARACTERS, "Robby", {.scale = 0.5, .position = wanted});
        const auto& figure = std::get<std::unique_ptr<QtCharacter>>(loaded);
        EXPECT_TRUE(screen.contains(QRect(figure->window()->pos(), figure->window()->size())));
        EXPECT_EQ(figure->window()->pos() == wanted, wanted == QPoint(11, 22));
    }
}

TEST_F(QtCharacterTest, ADoubleClickIsOneClickAndOneDoubleClick) {
    show();
    const QPoint at = character->window()->geometry().center();
    mouse(QEvent::MouseButtonPress, at);
    mouse(QEvent::MouseButtonRelease, at);
    mouse(QEvent::MouseButtonDblClick, at);
    mouse(QEvent::MouseButtonRelease, at);
    EXPECT_THAT(clicks, ElementsAre(1));
    EXPECT_THAT(doubleClicks, ElementsAre(1));
    mouse(QEvent::MouseButtonPress, at, Qt::RightButton);
    mouse(QEvent::MouseButtonRelease, at, Qt::RightButton);
    EXPECT_THAT(clicks, ElementsAre(1, 2));
}

TEST_F(QtCharacterTest, AScreenReaderCanDoWhatTheMouseDoes) {
    auto* actions = QAccessible::queryAccessibleInterface(character->window())->actionInterface();
    ASSERT_NE(actions, nullptr);
    for (const QString& name : actions->actionNames()) actions->doAction(name);
    actions->doAction(QStringLiteral("no such action"));
    EXPECT_THAT(clicks, ElementsAre(1, 2));
    EXPECT_THAT(doubleClicks, ElementsAre(1));
}

}  // namespace
