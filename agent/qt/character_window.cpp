#include "agent/qt/character_window.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QCursor>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <array>
#include <span>
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

// Where two frames differ, in device pixels.
QRect difference(const QImage& before, const QImage& after) {
    if (before.size() != after.size()) return after.rect();
    const auto width = static_cast<std::size_t>(after.width());
    int top = -1, bottom = -1;
    std::size_t left = width, right = 0;
    for (int y = 0; y < after.height(); ++y) {
        const std::span old(reinterpret_cast<const QRgb*>(before.constScanLine(y)), width);
        const std::span now(reinterpret_cast<const QRgb*>(after.constScanLine(y)), width);
        const auto first = std::ranges::mismatch(old, now).in1 - old.begin();
        if (first == old.end() - old.begin()) continue;
        const auto last = std::mismatch(old.rbegin(), old.rend(), now.rbegin()).first;
        if (top < 0) top = y;
        bottom = y;
        left = std::min(left, static_cast<std::size_t>(first));
        right = std::max(right, static_cast<std::size_t>(old.rend() - last));
    }
    if (top < 0) return {};
    return {QPoint(static_cast<int>(left), top), QPoint(static_cast<int>(right) - 1, bottom)};
}

/// What a mouse does with the figure, for those who have none.
class FigureActions : public QAccessibleWidget {
public:
    explicit FigureActions(CharacterWindow& figure)
        : QAccessibleWidget(&figure, QAccessible::Graphic), figure_(figure) {}

    QStringList actionNames() const override { return {pressAction(), doubleClick(), showMenuAction()}; }
    QString localizedActionName(const QString& name) const override {
        return name == doubleClick() ? CharacterWindow::tr("Double-click")
                                     : QAccessibleWidget::localizedActionName(name);
    }
    void doAction(const QString& name) override {
        if (!actionNames().contains(name)) return;
        const auto call = name == doubleClick() ? figure_.onDoubleClick : figure_.onClick;
        const QPoint at = QRect(figure_.position(), figure_.size()).center();
        const auto button = name == showMenuAction() ? Qt::RightButton : Qt::LeftButton;
        if (call) call(buttonNumber(button), 0, at.x(), at.y());
    }

private:
    static QString doubleClick() { return QStringLiteral("DoubleClick"); }

    CharacterWindow& figure_;
};

}  // namespace

CharacterWindow::CharacterWindow(QSize size)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(size);
    // Owned by the toolkit from here on, and gone with the widget.
    QAccessible::registerAccessibleInterface(new FigureActions(*this));
}

void CharacterWindow::setFrame(QImage frame, bool still) {
    const QRect changed = difference(frame_, frame);
    frame_ = std::move(frame);
    if (isVisible() && (still || !composited_)) shape();
    const double scale = deviceScale();
    update(QRectF(QPointF(changed.topLeft()) / scale, QSizeF(changed.size()) / scale)
               .toAlignedRect()
               .adjusted(-1, -1, 1, 1));  // the desktop may blend neighbours
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
    if (desktopPlacesWindows()) {
        pressed_ = !windowHandle()->startSystemMove();
        return;
    }
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
