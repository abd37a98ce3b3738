#include "agent/workshop/preview_window.h"

#include <QCursor>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QStyle>
#include <algorithm>
#include <utility>

namespace agent {
namespace {

using namespace std::chrono_literals;

constexpr auto frame = 33ms;

// How far the pupils go, in the rig's units, and how far off the mouse is when they are there.
constexpr double farthestGaze = 2.4;
constexpr double gazeDistance = 200;

}  // namespace

PreviewWindow::PreviewWindow(Package package, std::unique_ptr<PartArt> art, int size)
    : package_(std::move(package)),
      art_(std::move(art)),
      scale_(size / package_.rig.height),
      animator_(package_.rig),
      clips_(new QListWidget),
      figure_(new QLabel) {
    setWindowTitle(QString::fromStdString(package_.rig.name));
    for (const Clip& clip : package_.rig.clips) clips_->addItem(QString::fromStdString(clip.name));
    clips_->setFixedWidth(clips_->sizeHintForColumn(0) +
                          clips_->style()->pixelMetric(QStyle::PM_ScrollBarExtent) +
                          4 * clips_->frameWidth());
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(clips_);
    layout->addWidget(figure_, 1);
    figure_->setAlignment(Qt::AlignCenter);
    connect(clips_, &QListWidget::currentTextChanged, this, [this](const QString& name) { play(name); });
    connect(clips_, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) { play(item->text()); });
    connect(&frames_, &QTimer::timeout, this, [this] { turn(); });
    clock_.start();
    frames_.start(frame);
    paintFigure();  // the window opens as large as the figure needs
}

void PreviewWindow::play(const QString& name) {
    if (const Clip* clip = package_.rig.clip(name.toStdString()))
        animator_.start(*clip, Milliseconds(clock_.elapsed()));
}

void PreviewWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space) animator_.leaveLoop(Milliseconds(clock_.elapsed()));
    QWidget::keyPressEvent(event);
}

void PreviewWindow::turn() {
    animator_.advance(Milliseconds(clock_.elapsed()));
    paintFigure();
}

void PreviewWindow::paintFigure() {
    Pose pose = animator_.pose();
    if (const auto gaze = package_.rig.bone("gaze"); gaze && animator_.atRest()) {
        const QPointF offset = figure_->mapFromGlobal(QCursor::pos()) - figure_->rect().center();
        pose[*gaze][Channel::x] = std::clamp(offset.x() / gazeDistance, -1.0, 1.0) * farthestGaze;
        pose[*gaze][Channel::y] = std::clamp(offset.y() / gazeDistance, -1.0, 1.0) * farthestGaze;
    }
    const double pixels = devicePixelRatioF();
    QImage picture = art_->paint(package_.rig, pose, scale_ * pixels);
    picture.setDevicePixelRatio(pixels);
    figure_->setPixmap(QPixmap::fromImage(picture));
}

}  // namespace agent
