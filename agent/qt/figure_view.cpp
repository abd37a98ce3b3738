#include "agent/qt/figure_view.h"

#include <QCursor>
#include <QPainter>
#include <cmath>

#include "agent/qt/qt_character.h"
#include "agent/qt/wake_timer.h"

namespace agent {

std::unique_ptr<FigureView> FigureView::make(Package package,
                                             std::function<std::size_t(std::size_t count)> pick) {
    std::string reason;
    auto art = PartArt::load(package.art, package.rig, reason);
    if (!art) return nullptr;
    return std::unique_ptr<FigureView>(
        new FigureView(std::move(package.rig), std::move(art), std::move(pick)));
}

FigureView::FigureView(Rig rig, std::unique_ptr<PartArt> art,
                       std::function<std::size_t(std::size_t count)> pick)
    : rig_(std::move(rig)),
      art_(std::move(art)),
      pose_(rig_.rest),
      performer_({.rig = rig_,
                  .display = *this,
                  .now = [this] { return Milliseconds(clock_.elapsed()); },
                  .wake = wakeBy(wake_),
                  .pick = std::move(pick)}),
      queue_(performer_, post()) {
    clock_.start();
    wake_.setSingleShot(true);
    connect(&wake_, &QTimer::timeout, this, [this] { performer_.turn(); });
    setFixedSize(static_cast<int>(std::ceil(rig_.width)), static_cast<int>(std::ceil(rig_.height)));
    setAccessibleName(QString::fromStdString(rig_.name));
}

// The queue ends after the voice has gone.
FigureView::~FigureView() {
    performer_.setVoice(nullptr);
}

Post FigureView::post() {
    return postTo(*this);
}

void FigureView::perform(std::unique_ptr<Voice> voice, const std::vector<Order>& orders) {
    queue_.stopAll();
    performer_.setVoice(nullptr);
    voice_ = std::move(voice);
    performer_.setVoice(voice_.get());
    for (const Order& order : orders) queue_.ask(order);
}

void FigureView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    queue_.ask({Action::show, {}});
}

void FigureView::hideEvent(QHideEvent* event) {
    perform(nullptr, {{Action::hide, {}}});
    QWidget::hideEvent(event);
}

void FigureView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawImage(QRectF(rect()), art_->paint(rig_, pose_, devicePixelRatioF()));
}

void FigureView::draw(const Pose& pose, bool) {
    if (pose == pose_) return;
    pose_ = pose;
    update();
}

std::optional<Place> FigureView::pointerFrom(double x, double y) const {
    const QPointF from = mapFromGlobal(QPointF(QCursor::pos())) - QPointF(x, y);
    return Place{static_cast<int>(from.x()), static_cast<int>(from.y())};
}

void FigureView::openBalloon(BalloonKind kind, const SpokenLine& line) {
    line_ = toShown(line);
    balloon_.open(kind, line_.text, QString::fromStdString(rig_.name), {mapToGlobal(QPoint(0, 0)), size()});
}

void FigureView::revealWord(std::size_t word) {
    balloon_.reveal(word < line_.wordEnds.size() ? line_.wordEnds[word] : line_.text.size());
}

}  // namespace agent
