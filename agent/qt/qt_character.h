#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QTimer>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "agent/animator.h"
#include "agent/qt/balloon.h"
#include "agent/qt/character_window.h"
#include "agent/qt/idle.h"
#include "agent/qt/part_art.h"
#include "agent/qt/shown_line.h"
#include "agent/request_queue.h"
#include "agent/voice/voice.h"

namespace agent {

/// Runs functions in turns of `context`'s event loop, until it is destroyed. May be used from other threads
/// while `context` lives.
Post postTo(QObject& context);

/// A figure on the desktop that performs orders: its window, its balloon, its animation and its voice.
///
/// A clip may free the figure before it ends: a line that follows is then spoken while the gesture goes on,
/// but the next animation waits for its end.
class QtCharacter : public QObject, public Stage {
public:
    struct Options {
        double scale = 1;  ///< pixels to a unit of the rig, 0.25 to 4
        /// Makes the voice, with the character's own defaults; empty: lines are shown at a reading pace.
        std::function<std::unique_ptr<Voice>(const CharacterVoice& character, Post post)> voice;
        /// A number below `count`, at random; it chooses alternatives and idle animations. Empty: the first.
        std::function<std::size_t(std::size_t count)> pick;
    };

    /// The character, or one sentence that says why it can't be loaded.
    using Loaded = std::variant<std::unique_ptr<QtCharacter>, std::string>;

    /// Loads the package `name` below the folder `root`. The figure begins hidden.
    static Loaded load(const std::string& root, const std::string& name, Options options);

    ~QtCharacter() override;

    // Stage
    void perform(const Order& order, std::function<void(bool performed)> done) override;
    void cut() override;
    bool has(std::string_view animation) const override;

    /// The character's name, as its package gives it.
    const std::string& name() const { return rig_.name; }

    /// Whether the figure's window is on screen. Later than `RequestQueue::visible` by the hide animation.
    bool onScreen() const { return window_.isVisible(); }

    /// Button: 1 left, 2 right, 4 middle. Keys held: 1 shift, 2 control, 4 alt. Position on the desktop, in
    /// device independent pixels. A drag is no click; the first press of a double click is one.
    CharacterWindow::Clicked onClick;
    CharacterWindow::Clicked onDoubleClick;

    /// The figure's window, for a menu to belong to; never null.
    QWidget* window() { return &window_; }

    /// The figure as it stands, in device pixels.
    QImage picture() const { return picture_; }

private:
    QtCharacter(Rig rig, std::unique_ptr<PartArt> art, Options options);

    void show();
    void hide();
    void play(const Clip& clip);
    void speak(const std::string& text);
    void think(const std::string& text);
    void moveTo(QPoint target);

    QRect figure() const;
    void beginLine(BalloonKind kind, const std::string& text);
    SpokenLine openBalloon();
    void speakPart();
    void thinkPart();
    void endPart();
    void revealWord(std::size_t word);
    void revealNextThought();
    void endLine();

    void finish();
    void turn();
    void slide(Milliseconds now);
    void checkOrder();
    void drawFrame();
    void animate();
    void rest();
    void idle();
    void dragged();
    Milliseconds now() const { return Milliseconds(clock_.elapsed()); }

    struct Slide {
        QPoint from, to;
        Milliseconds since, lasts;
    };

    const Rig rig_;
    const std::unique_ptr<PartArt> art_;
    Options options_;
    CharacterWindow window_;
    Balloon balloon_;
    Animator animator_;
    Idle idle_;
    QElapsedTimer clock_;
    QTimer frames_;    ///< runs only while something moves
    QTimer resting_;   ///< one shot: until the figure does something of its own accord
    QTimer thinking_;  ///< one shot: until the next word of a thought
    QImage picture_;
    Pose drawn_;
    bool placed_ = false;
    bool still_ = false;  ///< where clicks go is worked out for the present frame

    std::optional<Action> action_;  ///< of the order under way
    std::function<void(bool)> done_;
    const Clip* pending_ = nullptr;  ///< to be played when the gesture before it has ended
    std::optional<Slide> slide_;
    BalloonKind lineKind_ = BalloonKind::speech;
    std::string lineText_;       ///< of the order under way
    std::string_view lineRest_;  ///< what of it has not been begun
    ShownLine line_;             ///< the part under way
    std::size_t nextWord_ = 0;   ///< of a thought
    Mouth mouth_ = Mouth::closed;
    bool speaking_ = false;

    std::unique_ptr<Voice> voice_;  ///< goes first: its thread posts to this
};

}  // namespace agent
