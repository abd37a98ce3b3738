#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QTimer>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "agent/performer.h"
#include "agent/qt/balloon.h"
#include "agent/qt/character_window.h"
#include "agent/qt/part_art.h"
#include "agent/qt/shown_line.h"
#include "agent/request_queue.h"
#include "agent/voice/voice.h"

namespace agent {

/// Runs functions in turns of `context`'s event loop, until it is destroyed. May be used from other threads
/// while `context` lives.
Post postTo(QObject& context);

/// A figure on the desktop that performs orders, as `Performer` says: its window, its balloon and its voice.
class QtCharacter : public QObject, public Stage, private Display {
public:
    /// Makes the voice, with the character's own defaults; empty: lines are shown at a reading pace.
    using VoiceMaker = std::function<std::unique_ptr<Voice>(const CharacterVoice& character, Post post)>;

    struct Options {
        double scale = 1;  ///< pixels to a unit of the rig, 0.25 to 4; no larger than the screen
        Habits habits = {};
        std::optional<QPoint> position =
            {};  ///< of the upper left corner; else the lower right of the desktop
        VoiceMaker voice = {};
        /// A number below `count`, at random; it chooses alternatives and idle animations. Empty: the first.
        std::function<std::size_t(std::size_t count)> pick = {};
    };

    /// The character, or one sentence that says why it can't be loaded.
    using Loaded = std::variant<std::unique_ptr<QtCharacter>, std::string>;

    /// Loads the package `name` below the folder `root`. The figure begins hidden. Nothing is read later, so
    /// that the package may change or go meanwhile.
    static Loaded load(const std::string& root, const std::string& name, Options options);

    ~QtCharacter() override;

    // Stage
    void perform(const Order& order, std::function<void(bool performed)> done) override;
    void cut() override { performer_.cut(); }
    bool has(std::string_view animation) const override { return performer_.has(animation); }

    /// The character's name, as its package gives it.
    const std::string& name() const { return rig_.name; }

    /// Whether the figure's window is on screen. Later than `RequestQueue::visible` by the hide animation.
    bool onScreen() const { return window_.isVisible(); }

    /// These take effect at once; a line that is being said ends when its voice goes.
    void setScale(double scale);
    void setHabits(Habits habits) { performer_.setHabits(habits); }
    void setVoice(const VoiceMaker& voice);

    /// The microphone is on, or off again.
    void listening(bool on) { performer_.listening(on); }

    /// Somebody is speaking to the figure.
    void speechHeard() { performer_.speechHeard(); }

    /// Button: 1 left, 2 right, 4 middle. Keys held: 1 shift, 2 control, 4 alt. Position on the desktop, in
    /// device independent pixels. A drag is no click; the first press of a double click is one.
    CharacterWindow::Clicked onClick;
    CharacterWindow::Clicked onDoubleClick;

    /// The figure has come to stand elsewhere: where its upper left corner is now.
    std::function<void(QPoint corner)> onPlaced;

    /// `area` may have changed: on every step of a way or a drag, too.
    std::function<void()> onMoved;

    /// The part of the desktop that the figure takes up at rest; empty while it is not on screen.
    QRect area() const { return onScreen() ? figure() : QRect(); }

    /// The figure's window, for a menu to belong to; never null.
    QWidget* window() { return &window_; }

    /// The figure as it stands, in device pixels.
    QImage picture() const { return picture_; }

private:
    QtCharacter(Rig rig, std::unique_ptr<PartArt> art, Options options);

    // Display
    void draw(const Pose& pose, bool still) override;
    void showFigure(bool visible) override;
    Place position() const override;
    void place(Place corner) override;
    Place inside(Place corner) const override;
    std::optional<Place> pointerFrom(double x, double y) const override;
    void openBalloon(BalloonKind kind, const SpokenLine& line) override;
    void revealWord(std::size_t word) override;
    void closeBalloon() override { balloon_.closeNow(); }

    QRect figure() const;
    void dragged();
    void followFigure();
    void tellPlace();
    void watchScreens();
    void stayOnScreen();

    const Rig rig_;
    const std::unique_ptr<PartArt> art_;
    double scale_;
    CharacterWindow window_;
    Balloon balloon_;
    ShownLine line_;
    QImage picture_;
    Pose drawn_;
    bool still_ = false;  ///< where clicks go is worked out for the present picture
    QElapsedTimer clock_;
    QTimer wake_;
    Performer performer_;
    std::unique_ptr<Voice> voice_;  ///< goes first: its thread posts to this
};

}  // namespace agent
