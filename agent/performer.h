#pragma once

#include <functional>
#include <optional>
#include <string>

#include "agent/animator.h"
#include "agent/display.h"
#include "agent/gaze.h"
#include "agent/idle.h"
#include "agent/request_queue.h"
#include "agent/slide.h"
#include "agent/voice/voice.h"

namespace agent {

/// What a person has set about a figure's behaviour.
struct Habits {
    bool balloon = true;   ///< spoken lines are shown; thoughts always are
    bool autoHide = true;  ///< the balloon closes by itself a while after the last word
    bool idle = true;      ///< plays idle animations and follows the pointer with its eyes; it always blinks
};

/// A figure that performs orders, knowing neither a toolkit nor a clock: it moves when it is asked to and
/// when the time has come that it asked to be woken at.
///
/// - An animation may free the figure before it ends: a line that follows is then spoken while it goes on.
/// The
///   next animation waits for its end.
/// - An animation that repeats does so until the next order, one that holds its pose until its return, or
///   another animation.
/// - What the figure does of its own accord, or while it listens, gives way to every order.
class Performer : public Stage {
public:
    struct Needs {
        const Rig& rig;
        Display& display;
        std::function<Milliseconds()> now;  ///< never goes back
        /// Asks for a call of `turn` in that time, in place of an earlier wish; nothing: for none.
        std::function<void(std::optional<Milliseconds>)> wake;
        std::function<std::size_t(std::size_t count)> pick;  ///< a number below `count`, at random
    };
    explicit Performer(Needs needs);

    // Stage
    void perform(const Order& order, std::function<void(bool performed)> done) override;
    void cut() override;
    bool has(std::string_view animation) const override { return needs_.rig.clip(animation) != nullptr; }

    /// Goes on with whatever is due.
    void turn();

    /// From the next line on. `voice` outlives its use here; null: lines are shown at a reading pace.
    void setVoice(Voice* voice);

    void setHabits(Habits habits);

    /// The microphone is on, or off again.
    void listening(bool on);

    /// Somebody is speaking to the figure.
    void speechHeard();

    /// The figure has been put elsewhere by hand: a way under way ends here.
    void moved();

    /// Whether the figure is on screen: until its hide animation has ended.
    bool onScreen() const { return onScreen_; }

    /// Draws the figure anew, as after a change of its size.
    void redraw();

private:
    void begin(const Order& order);
    void show();
    void hide();
    void play(const Clip& clip);
    void moveTo(Place target);

    void beginLine(BalloonKind kind, const std::string& text);
    SpokenLine openBalloon();
    void nextPart();
    void speakPart(SpokenLine part);
    void revealNext();
    void endPart();
    void endLine();
    void finish();
    void hasVanished();

    void playOwn(const Clip* clip);
    void idle();
    void lookAtPointer();

    void frame();
    void slide(Milliseconds now);
    void checkOrder();
    bool underWay() const;
    void draw();
    void schedule();
    bool due(std::optional<Milliseconds>& time);

    Needs needs_;
    Animator animator_;
    Gaze gaze_;
    Idle idle_;
    Voice* voice_ = nullptr;
    Habits habits_;

    std::optional<Action> action_;  ///< of the order under way
    std::function<void(bool)> done_;
    std::optional<Place> target_;  ///< of a way that waits for its animation
    std::optional<Slide> slide_;
    bool onScreen_ = false;
    bool own_ = false;  ///< what plays was not asked for
    bool listening_ = false;
    bool speaking_ = false;  ///< aloud
    bool balloonOpen_ = false;
    Mouth mouth_ = Mouth::closed;
    BalloonKind lineKind_ = BalloonKind::speech;
    std::string lineText_;       ///< of the line under way
    std::string_view lineRest_;  ///< what of it has not been begun
    Delivery lineDelivery_;      ///< of the words behind the part under way
    std::size_t words_ = 0;      ///< of the present part
    std::size_t nextWord_ = 0;

    // When to do what.
    std::optional<Milliseconds> frameAt_;
    std::optional<Milliseconds> wordAt_;
    std::optional<Milliseconds> closeAt_;
    std::optional<Milliseconds> idleAt_;
};

}  // namespace agent
