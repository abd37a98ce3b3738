#include "agent/qt/character_window.h"

#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <array>
#include <utility>

#include "agent/qt/nearest_screen.h"
#include "agent/qt/window_shape.h"

namespace agent {
namespace {

int buttonNumber(Qt::MouseButton button) {
    constexpr std::array<std::pair<Qt::MouseButton, int>, 3> numbers = {
        {{Qt::LeftButton, 1}, {Qt::RightButton, 2}, {Qt::MiddleButton, 4}}};
    const auto found = std::ranges::find(numbers, button, &std::pair<Qt::MouseButton, int>::first);
    return found == numbers.end() ? 0 : found->second;
}

int shiftState(Qt::KeyboardModifiers keys) {
    return (keys.testFlag(Qt::ShiftModifier) ? 1 : 0) + (keys.testFlag(Qt::ControlModifier) ? 2 : 0) +
           (keys.testFlag(Qt::AltModifier) ? 4 : 0);
}

}  // namespace

CharacterWindow::CharacterWindow(QSize size)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(size);
}

void CharacterWindow::setFrame(QImage frame, bool still) {
    frame_ = std::move(frame);
    if (isVisible() && (still || !composited_)) shape();
    update();
}

void CharacterWindow::shape() {
    shapeWindow(*this, frame_, composited_);
}

void CharacterWindow::updateComposited() {
    if (std::exchange(composited_, isComposited(*this)) != composited_ && isVisible()) shape();
}

QPoint CharacterWindow::inside(QPoint position) const {
    constexpr int farthest = 1'000'000;  // no desktop is larger, and no sum below overflows
    position = {std::clamp(position.x(), -farthest, farthest), std::clamp(position.y(), -farthest, farthest)};
    const QRect wanted(position, size());
    const QRect area = nearestScreen(wanted.center())->availableGeometry();
    const QPoint last(std::max(area.left(), area.right() + 1 - width()),
                      std::max(area.top(), area.bottom() + 1 - height()));
    return {std::clamp(position.x(), area.left(), last.x()), std::clamp(position.y(), area.top(), last.y())};
}

void CharacterWindow::place(QPoint position) {
    placed_ = position;
    sincePlaced_.start();
    move(position);
}

QPoint CharacterWindow::position() const {
    constexpr qint64 settled = 500;  // milliseconds: from then on, it may also have been moved by the desktop
    const bool known = !isVisible() || !sincePlaced_.hasExpired(settled);
    return known && sincePlaced_.isValid() ? placed_ : positionOnDesktop(*this);
}

void CharacterWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QRectF(rect()), frame_);
}

void CharacterWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    updateComposited();
    shape();
}

// A figure that vanishes slips from the hand that drags it.
void CharacterWindow::hideEvent(QHideEvent* event) {
    pressed_ = dragged_ = false;
    QWidget::hideEvent(event);
}

void CharacterWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    pressed_ = true;
    dragged_ = false;
    pressedAt_ = event->globalPosition().toPoint();
    grip_ = event->position().toPoint();
}

void CharacterWindow::mouseMoveEvent(QMouseEvent* event) {
    if (!pressed_) return;
    const QPoint pointer = event->globalPosition().toPoint();
    if (!dragged_ && (pointer - pressedAt_).manhattanLength() < QApplication::startDragDistance()) return;
    dragged_ = true;
    place(pointer - grip_);
    if (onDragged) onDragged();
}

void CharacterWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return tell(onClick, *event);
    const bool clicked = std::exchange(pressed_, false) && !dragged_;
    if (clicked) return tell(onClick, *event);
    if (!std::exchange(dragged_, false)) return;
    place(inside(event->globalPosition().toPoint() - grip_));
    if (onDropped) onDropped();
}

void CharacterWindow::mouseDoubleClickEvent(QMouseEvent* event) {
    // The release that follows belongs to the double click: it is no click of its own.
    pressed_ = dragged_ = false;
    tell(onDoubleClick, *event);
}

void CharacterWindow::tell(const Clicked& told, const QMouseEvent& event) {
    const int button = buttonNumber(event.button());
    if (button == 0 || !told) return;
    const QPoint at = event.globalPosition().toPoint();
    const auto call = told;
    call(button, shiftState(event.modifiers()), at.x(), at.y());
}

}  // namespace agent
