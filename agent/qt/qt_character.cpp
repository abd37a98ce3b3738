#include "agent/qt/qt_character.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "agent/qt/package_reader.h"

namespace agent {
namespace {

constexpr Milliseconds frame{33};

/// How many bytes of a line are worked on at a time: a long one must not hold up the events of the desktop.
constexpr std::size_t linePart = 8192;

constexpr std::array<std::string_view, 7> mouthSlots = {"closed", "A", "E", "O", "U", "F", "L"};

QSize sizeOf(const Rig& rig, double scale) {
    return {static_cast<int>(std::ceil(rig.width * scale)), static_cast<int>(std::ceil(rig.height * scale))};
}

void setMouth(Pose& pose, const Rig& rig, Mouth mouth) {
    const auto bone = rig.bone("mouth");
    if (!bone) return;
    if (const auto slot = slotOf(rig.bones[*bone], mouthSlots.at(static_cast<std::size_t>(mouth)))) {
        pose[*bone].slot = *slot;
    }
}

}  // namespace

Post postTo(QObject& context) {
    return [&context](std::function<void()> step) {
        QMetaObject::invokeMethod(&context, std::move(step), Qt::QueuedConnection);
    };
}

QtCharacter::Loaded QtCharacter::load(const std::string& root, const std::string& name, Options options) {
    auto read = readPackage(root, name);
    if (auto* reason = std::get_if<std::string>(&read)) return std::move(*reason);
    auto& package = std::get<Package>(read);
    std::string reason;
    auto art = PartArt::load(package.art, package.rig, reason);
    if (!art) return "The character \"" + name + "\" can't be loaded: " + reason + ".";
    options.scale = std::clamp(options.scale, 0.25, 4.0);
    if (!options.pick) options.pick = [](std::size_t) { return std::size_t{0}; };
    return std::unique_ptr<QtCharacter>(
        new QtCharacter(std::move(package.rig), std::move(art), std::move(options)));
}

QtCharacter::QtCharacter(Rig rig, std::unique_ptr<PartArt> art, Options options)
    : rig_(std::move(rig)),
      art_(std::move(art)),
      options_(std::move(options)),
      window_(sizeOf(rig_, options_.scale)),
      animator_(rig_),
      idle_(options_.pick) {
    clock_.start();
    frames_.setInterval(frame);
    resting_.setSingleShot(true);
    thinking_.setSingleShot(true);
    connect(&frames_, &QTimer::timeout, this, [this] { turn(); });
    connect(&resting_, &QTimer::timeout, this, [this] { idle(); });
    connect(&thinking_, &QTimer::timeout, this, [this] { revealNextThought(); });
    const auto pass = [this](CharacterWindow::Clicked QtCharacter::*event) {
        return [this, event](int button, int shift, int x, int y) {
            if (const auto told = this->*event) told(button, shift, x, y);
        };
    };
    window_.onClick = pass(&QtCharacter::onClick);
    window_.onDoubleClick = pass(&QtCharacter::onDoubleClick);
    window_.onDragged = [this] { dragged(); };
    window_.setAccessibleName(QString::fromStdString(rig_.name));
    if (options_.voice) voice_ = options_.voice(rig_.voice, postTo(*this));
}

QtCharacter::~QtCharacter() = default;

bool QtCharacter::has(std::string_view animation) const {
    return rig_.clip(animation) != nullptr;
}

void QtCharacter::perform(const Order& order, std::function<void(bool)> done) {
    action_ = order.action;
    done_ = std::move(done);
    idle_.disturb();
    resting_.stop();
    switch (order.action) {
        case Action::show:
            return show();
        case Action::hide:
            return hide();
        case Action::play:
            if (const Clip* clip = rig_.clip(order.text)) return play(*clip);
            action_.reset();
            return std::exchange(done_, nullptr)(false);
        case Action::speak:
            return speak(order.text);
        case Action::think:
            return think(order.text);
        case Action::moveTo:
            return moveTo({order.x, order.y});
    }
}

void QtCharacter::cut() {
    const auto action = std::exchange(action_, std::nullopt);
    done_ = nullptr;
    pending_ = nullptr;
    slide_.reset();
    thinking_.stop();
    if (voice_) voice_->stop();
    endLine();
    balloon_.closeNow();
    if (action == Action::hide) {
        animator_.place(rig_.rest);
        window_.hide();
        return rest();
    }
    if (action == Action::show) animator_.place(rig_.rest);
    animator_.settle(now());
    animate();
}

void QtCharacter::show() {
    if (!placed_) {
        constexpr int margin = 24;
        const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
        window_.place(area.bottomRight() - QPoint(window_.width() + margin, window_.height() + margin));
        placed_ = true;
    }
    window_.place(window_.inside(window_.position()));
    if (const Clip* clip = rig_.clip("Show")) {
        animator_.place(clip->keys.front().pose);
        animator_.start(*clip, now());
    } else {
        animator_.place(rig_.rest);
    }
    drawFrame();
    window_.show();
    animate();
}

void QtCharacter::hide() {
    balloon_.closeNow();
    if (const Clip* clip = rig_.clip("Hide")) animator_.start(*clip, now());
    animate();
}

void QtCharacter::play(const Clip& clip) {
    window_.updateComposited();
    pending_ = &clip;
    animator_.leaveLoop();
    animate();
}

// The part of the window that the figure fills at rest.
QRect QtCharacter::figure() const {
    const QRect area(window_.position(), window_.size());
    return area.adjusted(area.width() / 10, area.height() / 20, -area.width() / 10, -area.height() / 40);
}

void QtCharacter::beginLine(BalloonKind kind, const std::string& text) {
    lineKind_ = kind;
    lineText_ = chooseAlternative(text, options_.pick);
    lineRest_ = lineText_;
}

// Shows the next part of the line.
SpokenLine QtCharacter::openBalloon() {
    SpokenLine line = takeSpeech(lineRest_, linePart);
    line_ = toShown(line);
    const QString speaker = QString::fromStdString(rig_.name);
    const bool says = lineKind_ == BalloonKind::speech;
    const QString description =
        says ? QObject::tr("%1 says").arg(speaker) : QObject::tr("%1 thinks").arg(speaker);
    if (line_.text.trimmed().isEmpty()) {
        balloon_.closeNow();
    } else {
        balloon_.open(lineKind_, line_.text, description, figure());
    }
    return line;
}

void QtCharacter::speak(const std::string& text) {
    beginLine(BalloonKind::speech, text);
    voice_ ? speakPart() : thinkPart();
}

void QtCharacter::speakPart() {
    SpokenLine line = openBalloon();
    speaking_ = true;
    voice_->speak(std::move(line), {.onWord = [this](std::size_t word) { revealWord(word); },
                                    .onMouth =
                                        [this](Mouth mouth) {
                                            mouth_ = mouth;
                                            drawFrame();
                                        },
                                    .onEnd = [this] { endPart(); }});
}

void QtCharacter::think(const std::string& text) {
    beginLine(BalloonKind::thought, text);
    thinkPart();
}

void QtCharacter::thinkPart() {
    openBalloon();
    nextWord_ = 0;
    revealNextThought();
}

void QtCharacter::endPart() {
    if (!lineRest_.empty()) return speaking_ ? speakPart() : thinkPart();
    endLine();
    finish();
}

void QtCharacter::revealWord(std::size_t word) {
    if (word < line_.wordEnds.size()) balloon_.reveal(line_.wordEnds[word]);
}

void QtCharacter::revealNextThought() {
    constexpr Milliseconds reading{260};
    constexpr Milliseconds pondering{1200};
    if (nextWord_ > line_.wordEnds.size()) return endPart();
    revealWord(nextWord_);
    thinking_.start(++nextWord_ < line_.wordEnds.size() ? reading : pondering);
    if (nextWord_ == line_.wordEnds.size()) ++nextWord_;
}

// What stays to be seen is the whole line: a word may lie beyond the last one that was told.
void QtCharacter::endLine() {
    speaking_ = false;
    lineText_.clear();
    lineRest_ = {};
    mouth_ = Mouth::closed;
    nextWord_ = 0;
    if (balloon_.isVisible()) {
        balloon_.reveal(line_.text.size());
        balloon_.closeSoon();
    }
    drawFrame();
}

void QtCharacter::moveTo(QPoint target) {
    constexpr double pixelsPerSecond = 1200;
    constexpr Milliseconds shortest{150};
    constexpr Milliseconds longest{900};
    const QPoint from = window_.position();
    const QPoint to = window_.inside(target);
    placed_ = true;
    if (!onScreen()) window_.place(to);
    if (!onScreen() || from == to) return finish();
    balloon_.closeNow();
    const double distance = std::hypot(to.x() - from.x(), to.y() - from.y());
    const Milliseconds needed(std::lround(distance / pixelsPerSecond * 1000));
    slide_ = {from, to, now(), std::clamp(needed, shortest, longest)};
    animate();
}

void QtCharacter::slide(Milliseconds time) {
    const double part = std::min(1.0, static_cast<double>((time - slide_->since).count()) /
                                          static_cast<double>(slide_->lasts.count()));
    const double eased = part * part * (3 - 2 * part);
    window_.place((QPointF(slide_->from) + QPointF(slide_->to - slide_->from) * eased).toPoint());
    if (part >= 1) slide_.reset();
}

void QtCharacter::finish() {
    // A gesture that repeats goes on under a line, and ends with it.
    if (action_ == Action::speak || action_ == Action::think) animator_.leaveLoop();
    action_.reset();
    if (!frames_.isActive()) rest();
    if (const auto done = std::exchange(done_, nullptr)) done(true);
}

void QtCharacter::animate() {
    if (!frames_.isActive()) frames_.start();
    turn();
}

void QtCharacter::turn() {
    const auto time = now();
    animator_.advance(time);
    if (slide_) slide(time);
    drawFrame();
    checkOrder();
    if (!animator_.moving() && !slide_ && pending_ == nullptr) {
        frames_.stop();
        rest();
    }
}

// Whether what was asked for has come about.
void QtCharacter::checkOrder() {
    if (pending_ != nullptr) {
        if (animator_.moving()) return;
        animator_.start(*std::exchange(pending_, nullptr), now());
    }
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
            window_.hide();
            animator_.place(rig_.rest);
            finish();
            break;
        case Action::moveTo:
            if (!slide_) finish();
            break;
        case Action::speak:
        case Action::think:
            break;
    }
}

void QtCharacter::drawFrame() {
    Pose pose = animator_.pose();
    if (speaking_) setMouth(pose, rig_, mouth_);
    const double scale = options_.scale * window_.deviceScale();
    const QSize size = sizeOf(rig_, scale);
    const bool still = !animator_.moving();
    if (pose == drawn_ && picture_.size() == size && still_ >= still) return;
    picture_ = art_->paint(rig_, pose, scale);
    drawn_ = std::move(pose);
    still_ = still;
    window_.setFrame(picture_, still);
}

void QtCharacter::rest() {
    window_.updateComposited();
    if (onScreen()) {
        resting_.start(idle_.pause());
    } else {
        resting_.stop();
    }
}

void QtCharacter::idle() {
    const bool talking = action_ == Action::speak || action_ == Action::think;
    if ((talking || !action_) && animator_.atRest()) {
        if (const Clip* clip = talking ? rig_.clip("Blink") : idle_.choose(rig_)) {
            animator_.start(*clip, now());
            return animate();
        }
    }
    rest();
}

void QtCharacter::dragged() {
    balloon_.closeNow();
    slide_.reset();
}

}  // namespace agent
