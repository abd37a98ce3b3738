#include "agent/performer.h"

#include <algorithm>
#include <array>
#include <utility>

#include "agent/mouth.h"

namespace agent {
namespace {

constexpr Milliseconds frameLength{33};
constexpr Milliseconds readingAWord{260};
constexpr Milliseconds pondering{1200};
constexpr Milliseconds balloonStays{3500};

// How many bytes of a line are worked on at a time: a long one must not hold up the events of the desktop.
constexpr std::size_t linePart = 8192;

bool isLine(std::optional<Action> action) {
    return action == Action::speak || action == Action::think;
}

// The first of these animations that the figure has.
const Clip* firstOf(const Rig& rig, std::initializer_list<std::string_view> names) {
    for (const auto name : names) {
        if (const Clip* clip = rig.clip(name)) return clip;
    }
    return nullptr;
}

}  // namespace

Performer::Performer(Needs needs)
    : needs_(std::move(needs)), animator_(needs_.rig), gaze_(needs_.rig), idle_(needs_.pick) {}

void Performer::perform(const Order& order, std::function<void(bool)> done) {
    action_ = order.action;
    done_ = std::move(done);
    idle_.disturb();
    idleAt_.reset();
    begin(order);
    schedule();
}

void Performer::begin(const Order& order) {
    switch (order.action) {
        case Action::show:
            return show();
        case Action::hide:
            return hide();
        case Action::play:
            if (const Clip* clip = needs_.rig.clip(order.text)) return play(*clip);
            action_.reset();
            return std::exchange(done_, nullptr)(false);
        case Action::speak:
            return beginLine(BalloonKind::speech, order.text);
        case Action::think:
            return beginLine(BalloonKind::thought, order.text);
        case Action::moveTo:
            return moveTo({order.x, order.y});
    }
}

void Performer::cut() {
    const auto action = std::exchange(action_, std::nullopt);
    done_ = nullptr;
    target_.reset();
    slide_.reset();
    if (voice_ != nullptr) voice_->stop();
    endLine();
    needs_.display.closeBalloon();
    balloonOpen_ = false;
    if (action == Action::hide) {
        hasVanished();
        return schedule();
    }
    if (action == Action::show) animator_.place(needs_.rig.rest);
    animator_.settle(needs_.now());
    own_ = false;
    frame();
    schedule();
}

void Performer::show() {
    needs_.display.place(needs_.display.inside(needs_.display.position()));
    if (const Clip* clip = needs_.rig.clip("Show")) {
        animator_.place(clip->keys.front().pose);
        animator_.start(*clip, needs_.now());
    } else {
        animator_.place(needs_.rig.rest);
    }
    onScreen_ = true;
    own_ = false;
    draw();
    needs_.display.showFigure(true);
    frame();
}

void Performer::hide() {
    needs_.display.closeBalloon();
    balloonOpen_ = own_ = false;
    if (const Clip* clip = needs_.rig.clip("Hide")) {
        animator_.start(*clip, needs_.now());
    } else {
        animator_.place(needs_.rig.rest);
    }
    frame();
}

void Performer::hasVanished() {
    onScreen_ = false;
    needs_.display.showFigure(false);
    animator_.place(needs_.rig.rest);
    gaze_.aimAhead();
    own_ = false;
}

void Performer::play(const Clip& clip) {
    if (std::exchange(own_, false)) {
        animator_.start(clip, needs_.now());
    } else {
        animator_.follow(clip, needs_.now());
    }
    frame();
}

void Performer::moveTo(Place target) {
    const Place from = needs_.display.position();
    const Place to = needs_.display.inside(target);
    if (!onScreen_) needs_.display.place(to);
    if (!onScreen_ || from == to) return finish();
    needs_.display.closeBalloon();
    balloonOpen_ = false;
    const Clip* clip = needs_.rig.clip(moveAnimation(from, to));
    if (clip != nullptr && clip->loop) {
        target_ = to;  // sets off with the part that repeats
        return play(*clip);
    }
    slide_.emplace(from, to, needs_.now());
    if (clip != nullptr) return play(*clip);
    frame();
}

void Performer::beginLine(BalloonKind kind, const std::string& text) {
    if (std::exchange(own_, false)) animator_.settle(needs_.now());
    closeAt_.reset();
    lineKind_ = kind;
    lineText_ = chooseAlternative(text, needs_.pick);
    lineRest_ = lineText_;
    lineDelivery_ = {};
    nextPart();
}

// Shows the next part of the line.
SpokenLine Performer::openBalloon() {
    SpokenLine line = takeSpeech(lineRest_, linePart, lineDelivery_);
    words_ = line.words.size();
    balloonOpen_ = habits_.balloon || lineKind_ == BalloonKind::thought;
    if (balloonOpen_) {
        needs_.display.openBalloon(lineKind_, line);
    } else {
        needs_.display.closeBalloon();
    }
    return line;
}

void Performer::nextPart() {
    SpokenLine part = openBalloon();
    if (lineKind_ == BalloonKind::speech && voice_ != nullptr) return speakPart(std::move(part));
    nextWord_ = 0;
    revealNext();
}

void Performer::speakPart(SpokenLine part) {
    speaking_ = true;
    const auto onWord = [this](std::size_t word) {
        if (balloonOpen_) needs_.display.revealWord(word);
    };
    const auto onMouth = [this](Mouth mouth) {
        mouth_ = mouth;
        draw();
    };
    const auto onEnd = [this] {
        endPart();
        schedule();
    };
    voice_->speak(std::move(part), {.onWord = onWord, .onMouth = onMouth, .onEnd = onEnd});
    frame();
}

void Performer::revealNext() {
    if (nextWord_ > words_) return endPart();
    if (balloonOpen_) needs_.display.revealWord(nextWord_);
    wordAt_ = needs_.now() + (++nextWord_ < words_ ? readingAWord : pondering);
    if (nextWord_ == words_) ++nextWord_;
    frame();
}

void Performer::endPart() {
    if (!lineRest_.empty()) return nextPart();
    endLine();
    finish();
}

// What stays to be seen is the whole line: a word may lie beyond the last one that was told.
void Performer::endLine() {
    lineText_.clear();
    lineRest_ = {};
    speaking_ = false;
    mouth_ = Mouth::closed;
    nextWord_ = 0;
    wordAt_.reset();
    if (balloonOpen_) {
        needs_.display.revealWord(words_);
        if (habits_.autoHide) closeAt_ = needs_.now() + balloonStays;
    }
    draw();
}

void Performer::finish() {
    // What repeats goes on under a line, and ends with it.
    if (isLine(action_)) animator_.leaveLoop(needs_.now());
    action_.reset();
    if (const auto done = std::exchange(done_, nullptr)) done(true);
}

void Performer::setVoice(Voice* voice) {
    if (voice_ != nullptr && speaking_) {
        voice_->stop();
        endLine();
        finish();
    }
    voice_ = voice;
    schedule();
}

void Performer::setHabits(Habits habits) {
    habits_ = habits;
    if (!habits.idle) gaze_.aimAhead();
    frame();
    schedule();
}

void Performer::playOwn(const Clip* clip) {
    if (clip == nullptr || !onScreen_ || action_ || (animator_.moving() && !own_)) return;
    if (!own_ && !animator_.atRest()) return;  // a pose is held: it was asked for
    own_ = true;
    animator_.start(*clip, needs_.now());
    frame();
}

void Performer::listening(bool on) {
    if (std::exchange(listening_, on) == on) return;
    idle_.disturb();
    playOwn(on ? firstOf(needs_.rig, {"StartListening", "Alert"}) : needs_.rig.clip("StopListening"));
    schedule();
}

void Performer::speechHeard() {
    constexpr std::array<std::string_view, 4> names = {"Hearing_1", "Hearing_2", "Hearing_3", "Hearing_4"};
    playOwn(firstOf(needs_.rig, {names.at(needs_.pick(names.size()) % names.size()), names.front()}));
    schedule();
}

void Performer::moved() {
    if (!target_ && !slide_) return;
    target_.reset();
    slide_.reset();
    animator_.leaveLoop(needs_.now());
    frame();
    schedule();
}

void Performer::redraw() {
    draw();
}

void Performer::lookAtPointer() {
    if (!habits_.idle) return;
    const auto eyes = gaze_.eyes();
    if (!eyes) return;
    const auto pointer = needs_.display.pointerFrom(eyes->first, eyes->second);
    if (pointer) {
        gaze_.aim(pointer->x, pointer->y, needs_.rig.height);
    } else {
        gaze_.aimAhead();
    }
}

void Performer::idle() {
    if ((!action_ || isLine(action_)) && animator_.atRest()) {
        gaze_.advance(needs_.now());
        lookAtPointer();
        const bool calm = action_ || !habits_.idle;
        if (const Clip* clip = calm ? needs_.rig.clip("Blink") : idle_.choose(needs_.rig)) {
            own_ = true;
            animator_.start(*clip, needs_.now());
        }
    }
    frame();
}

void Performer::turn() {
    if (due(closeAt_)) {
        needs_.display.closeBalloon();
        balloonOpen_ = false;
    }
    if (due(wordAt_)) revealNext();
    if (due(idleAt_)) idle();
    if (due(frameAt_)) frame();
    schedule();
}

bool Performer::due(std::optional<Milliseconds>& time) {
    if (!time || *time > needs_.now()) return false;
    time.reset();
    return true;
}

bool Performer::underWay() const {
    return onScreen_ && (animator_.moving() || slide_ || target_ || gaze_.moving());
}

void Performer::frame() {
    const auto now = needs_.now();
    animator_.advance(now);
    gaze_.advance(now);
    slide(now);
    if (!animator_.moving()) own_ = false;
    draw();
    checkOrder();
}

void Performer::slide(Milliseconds now) {
    if (target_ && animator_.free())
        slide_.emplace(needs_.display.position(), *std::exchange(target_, {}), now);
    if (!slide_) return;
    needs_.display.place(slide_->at(now));
    if (!slide_->over(now)) return;
    slide_.reset();
    animator_.leaveLoop(now);
}

// Whether what was asked for has come about.
void Performer::checkOrder() {
    if (!action_) return;
    switch (*action_) {
        case Action::play:
            if (animator_.free()) finish();
            break;
        case Action::show:
            if (!animator_.moving()) finish();
            break;
        case Action::hide:
            if (animator_.moving()) break;
            hasVanished();
            finish();
            break;
        case Action::moveTo:
            if (!slide_ && !target_) finish();
            break;
        case Action::speak:
        case Action::think:
            break;
    }
}

void Performer::draw() {
    Pose pose = animator_.pose();
    gaze_.apply(pose);
    if (speaking_) setMouth(pose, needs_.rig, mouth_);
    needs_.display.draw(pose, !underWay());
}

void Performer::schedule() {
    const auto now = needs_.now();
    if (underWay()) {
        if (!frameAt_) frameAt_ = now + frameLength;
        idleAt_.reset();
    } else {
        frameAt_.reset();
        if (!onScreen_) {
            idleAt_.reset();
        } else if (!idleAt_) {
            idleAt_ = now + idle_.pause();
        }
    }
    std::optional<Milliseconds> next;
    for (const auto& time : {frameAt_, wordAt_, closeAt_, idleAt_}) {
        if (time && (!next || *time < *next)) next = time;
    }
    if (next) next = std::max(Milliseconds(0), *next - now);
    needs_.wake(next);
}

}  // namespace agent
