#include "agent/qt/qt_character.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

#include "agent/qt/package_reader.h"
#include "agent/qt/wake_timer.h"

namespace agent {
namespace {

QSize sizeOf(const Rig& rig, double scale) {
    return {static_cast<int>(std::ceil(rig.width * scale)), static_cast<int>(std::ceil(rig.height * scale))};
}

// A figure larger than the screen could be neither seen nor got out of the way.
double sensibleScale(const Rig& rig, double scale) {
    constexpr double smallest = 0.25;
    constexpr double largest = 4;
    const QSize area = QGuiApplication::primaryScreen()->availableSize();
    const double most = std::min({largest, area.width() / rig.width, area.height() / rig.height});
    return std::isfinite(scale) ? std::max(smallest, std::min(scale, most)) : 1;
}

Place toPlace(QPoint point) {
    return {point.x(), point.y()};
}

QPoint toPoint(Place place) {
    return {place.x, place.y};
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
    if (!options.pick) options.pick = [](std::size_t) { return std::size_t{0}; };
    return std::unique_ptr<QtCharacter>(
        new QtCharacter(std::move(package.rig), std::move(art), std::move(options)));
}

QtCharacter::QtCharacter(Rig rig, std::unique_ptr<PartArt> art, Options options)
    : rig_(std::move(rig)),
      art_(std::move(art)),
      scale_(sensibleScale(rig_, options.scale)),
      window_(sizeOf(rig_, scale_)),
      performer_({.rig = rig_,
                  .display = *this,
                  .now = [this] { return Milliseconds(clock_.elapsed()); },
                  .wake = wakeBy(wake_),
                  .pick = std::move(options.pick)}) {
    clock_.start();
    wake_.setSingleShot(true);
    connect(&wake_, &QTimer::timeout, this, [this] { performer_.turn(); });
    const auto pass = [this](CharacterWindow::Clicked QtCharacter::*event) {
        return [this, event](int button, int shift, int x, int y) {
            if (const auto told = this->*event) told(button, shift, x, y);
        };
    };
    window_.onClick = pass(&QtCharacter::onClick);
    window_.onDoubleClick = pass(&QtCharacter::onDoubleClick);
    window_.onDragged = [this] { dragged(); };
    window_.onDropped = [this] {
        dragged();
        tellPlace();
    };
    balloon_.belongTo(window_);
    window_.setWindowTitle(QString::fromStdString(rig_.name));
    window_.setAccessibleName(QString::fromStdString(rig_.name));
    constexpr int margin = 24;
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    const QPoint corner = area.bottomRight() - QPoint(window_.width() + margin, window_.height() + margin);
    window_.place(window_.inside(options.position.value_or(corner)));
    watchScreens();
    performer_.setHabits(options.habits);
    setVoice(options.voice);
}

QtCharacter::~QtCharacter() = default;

void QtCharacter::perform(const Order& order, std::function<void(bool)> done) {
    const bool moves = order.action == Action::moveTo;
    performer_.perform(order, [this, moves, told = std::move(done)](bool performed) {
        if (moves) tellPlace();
        told(performed);
    });
}

void QtCharacter::setVoice(const VoiceMaker& voice) {
    performer_.setVoice(nullptr);
    voice_ = voice ? voice(rig_.voice, postTo(*this)) : nullptr;
    performer_.setVoice(voice_.get());
}

void QtCharacter::setScale(double scale) {
    scale_ = sensibleScale(rig_, scale);
    // The feet stay where they are.
    const QPoint feet = QRect(window_.position(), window_.size()).bottomLeft();
    window_.setFixedSize(sizeOf(rig_, scale_));
    window_.place(window_.inside(feet - QPoint(0, window_.height() - 1)));
    performer_.redraw();
    dragged();
}

void QtCharacter::watchScreens() {
    const auto watch = [this](QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, [this] { stayOnScreen(); });
    };
    for (auto* screen : QGuiApplication::screens()) watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this] { stayOnScreen(); });
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, [this] { stayOnScreen(); });
}

// Later, when the desktop has made up its mind.
void QtCharacter::stayOnScreen() {
    QTimer::singleShot(0, this, [this] {
        if (window_.held() || QGuiApplication::screens().isEmpty()) return;
        place(inside(position()));
    });
}

// The part of the window that the figure fills at rest.
QRect QtCharacter::figure() const {
    const QRect area(window_.position(), window_.size());
    return area.adjusted(area.width() / 10, area.height() / 20, -area.width() / 10, -area.height() / 40);
}

void QtCharacter::dragged() {
    performer_.moved();
    followFigure();
}

void QtCharacter::followFigure() {
    if (balloon_.isVisible()) balloon_.follow(figure());
    if (onMoved) onMoved();
}

void QtCharacter::tellPlace() {
    if (onPlaced) onPlaced(window_.position());
}

void QtCharacter::draw(const Pose& pose, bool still) {
    const double scale = scale_ * window_.deviceScale();
    if (pose == drawn_ && picture_.size() == sizeOf(rig_, scale) && still_ >= still) return;
    if (still) window_.updateComposited();
    picture_ = art_->paint(rig_, pose, scale);
    drawn_ = pose;
    still_ = still;
    window_.setFrame(picture_, still);
}

void QtCharacter::showFigure(bool visible) {
    window_.setVisible(visible);
    if (onMoved) onMoved();
}

Place QtCharacter::position() const {
    return toPlace(window_.position());
}

void QtCharacter::place(Place corner) {
    if (window_.held()) return;
    window_.place(toPoint(corner));
    followFigure();
}

Place QtCharacter::inside(Place corner) const {
    return toPlace(window_.inside(toPoint(corner)));
}

std::optional<Place> QtCharacter::pointerFrom(double x, double y) const {
    const QPointF point = window_.position() + QPointF(x, y) * scale_;
    return toPlace(((QCursor::pos() - point) / scale_).toPoint());
}

void QtCharacter::openBalloon(BalloonKind kind, const SpokenLine& line) {
    line_ = toShown(line);
    if (line_.text.trimmed().isEmpty()) return balloon_.closeNow();
    const QString speaker = QString::fromStdString(rig_.name);
    const bool says = kind == BalloonKind::speech;
    balloon_.open(kind, line_.text, says ? tr("%1 says").arg(speaker) : tr("%1 thinks").arg(speaker),
                  figure());
}

void QtCharacter::revealWord(std::size_t word) {
    if (balloon_.isVisible())
        balloon_.reveal(word < line_.wordEnds.size() ? line_.wordEnds[word] : line_.text.size());
}

}  // namespace agent
