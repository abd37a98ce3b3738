#include "agent/qt/balloon.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "agent/qt/nearest_screen.h"
#include "agent/qt/window_shape.h"

namespace agent {
namespace {

struct Colours {
    QColor paper;
    QColor ink;
    QColor border;
    int borderWidth;
};

// A black desktop with white letters is one for people who need that contrast.
Colours coloursFor(const QPalette& palette) {
    constexpr int nearlyBlack = 8;
    constexpr int nearlyWhite = 247;
    const QColor window = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    if (window.lightness() <= nearlyBlack && text.lightness() >= nearlyWhite)
        return {Qt::black, Qt::white, Qt::white, 2};
    return {QColor::fromRgb(0xfff8dc), QColor::fromRgb(0x201a12), QColor::fromRgb(0x6b5a3a), 1};
}

constexpr int padding = 12;
constexpr int rounding = 12;
constexpr int speechTailLength = 16;
constexpr int thoughtTailLength = 26;
constexpr int lettersInLine = 34;
constexpr double mostOfScreen = 0.6;

}  // namespace

Balloon::Balloon()
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::BypassWindowManagerHint |
                           Qt::NoDropShadowWindowHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
    words_.setAttribute(Qt::WA_TransparentForMouseEvents);
    // Owned by the toolkit from here on, and gone with the widgets.
    QAccessible::registerAccessibleInterface(new QAccessibleWidget(this, QAccessible::Notification));
    QAccessible::registerAccessibleInterface(new QAccessibleWidget(&words_, QAccessible::StaticText));
}

void Balloon::open(BalloonKind kind, const QString& text, const QString& speaker, QRect figure) {
    kind_ = kind;
    composited_ = isComposited(*this);
    const QFont used = QApplication::font();
    const QFontMetrics metrics(used);
    const QSize area = nearestScreen(figure.center())->availableSize();
    const int width = std::min(metrics.averageCharWidth() * lettersInLine, area.width() * 2 / 5);
    const int height = static_cast<int>(area.height() * mostOfScreen) - 2 * padding;
    text_.set(text, used, {width, std::max(height, metrics.height())});
    attach();
    follow(figure);
    setAccessibleName(speaker);
    words_.setAccessibleName(text);
    if (isVisible()) {
        raise();
    } else {
        show();
    }
    // Screen readers read a notification when it comes into view. The toolkit tells them that of no window
    // of this kind, and a line may follow another in the same window.
    QAccessibleEvent appeared(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&appeared);
}

// A window of its own would be put anywhere by such a desktop; a part of the figure's goes where that goes.
void Balloon::attach() {
    if (figure_ == nullptr || !desktopPlacesWindows()) return;
    winId();  // makes the window
    windowHandle()->setParent(figure_->windowHandle());
}

void Balloon::follow(QRect figure) {
    beside_ = figure;
    const bool attached = windowHandle() != nullptr && windowHandle()->parent() != nullptr;
    const int tail = kind_ == BalloonKind::speech ? speechTailLength : thoughtTailLength;
    const auto bodyOf = [](QSize text) {
        return (text + QSize(2 * padding, 2 * padding)).expandedTo({3 * rounding, 2 * rounding});
    };
    const QSize body = bodyOf(text_.size());
    const QSize largest = bodyOf(text_.finalSize());
    // Where an attached one stands on the desktop, nobody knows: above the figure is the likeliest to be
    // seen.
    const QRect room =
        attached ? figure.marginsAdded({largest.width(), largest.height() + tail, largest.width(), 0})
                 : nearestScreen(figure.center())->availableGeometry();
    const auto place = placeBalloon(figure, {body, largest}, tail, room);
    const QRect whole = place.body.united(QRect(place.tip, QSize(1, 1))).adjusted(-1, -1, 1, 1);
    place_ = place;
    place_.body.translate(-whole.topLeft());
    place_.tip -= whole.topLeft();
    setGeometry(attached ? whole.translated(-figure_->position()) : whole);
    words_.setGeometry(place_.body);
    if (composited_) {
        clearMask();
    } else {
        setMask(QRegion(outline().toFillPolygon().toPolygon()));
    }
    update();
}

void Balloon::reveal(qsizetype end) {
    const QSize before = text_.size();
    text_.reveal(end);
    if (text_.size() == before) return update();
    follow(beside_);
}

void Balloon::closeNow() {
    hide();
}

QPainterPath Balloon::outline() const {
    QPainterPath path;
    path.addRoundedRect(QRectF(place_.body).adjusted(0.5, 0.5, -0.5, -0.5), rounding, rounding);
    return path.united(kind_ == BalloonKind::speech ? speechTail() : thoughtTail());
}

// A wedge from the side that faces the figure, as near to the tip as the rounded corners allow.
QPainterPath Balloon::speechTail() const {
    constexpr double half = 8;
    const QRectF body = QRectF(place_.body).adjusted(1, 1, -1, -1);
    const bool upright = place_.side == TailSide::bottom || place_.side == TailSide::top;
    const auto along = [](double wanted, double first, double last) {
        return std::clamp(wanted, first + rounding + half,
                          std::max(first + rounding + half, last - rounding - half));
    };
    const double x = upright ? along(place_.tip.x(), body.left(), body.right())
                             : (place_.side == TailSide::left ? body.left() : body.right());
    const double y = upright ? (place_.side == TailSide::top ? body.top() : body.bottom())
                             : along(place_.tip.y(), body.top(), body.bottom());
    const QPointF across = upright ? QPointF(half, 0) : QPointF(0, half);
    QPainterPath path(QPointF(x, y) - across);
    path.lineTo(place_.tip);
    path.lineTo(QPointF(x, y) + across);
    path.closeSubpath();
    return path;
}

// Three bubbles that shrink towards the figure.
QPainterPath Balloon::thoughtTail() const {
    struct Bubble {
        double part;  // of the way from the tip to the body
        double radius;
    };
    constexpr Bubble bubbles[] = {{0.78, 5.5}, {0.42, 4}, {0.13, 2.5}};
    const QPointF tip = place_.tip;
    const QPointF near(std::clamp(tip.x(), place_.body.left() + 20.0,
                                  std::max(place_.body.left() + 20.0, place_.body.right() - 20.0)),
                       std::clamp(tip.y(), place_.body.top() + 10.0,
                                  std::max(place_.body.top() + 10.0, place_.body.bottom() - 10.0)));
    const QPointF edge = place_.side == TailSide::bottom ? QPointF(near.x(), place_.body.bottom())
                         : place_.side == TailSide::top  ? QPointF(near.x(), place_.body.top())
                         : place_.side == TailSide::left ? QPointF(place_.body.left(), near.y())
                                                         : QPointF(place_.body.right(), near.y());
    QPainterPath path;
    for (const auto& bubble : bubbles)
        path.addEllipse(tip + (edge - tip) * bubble.part, bubble.radius, bubble.radius);
    return path;
}

void Balloon::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Colours colours = coloursFor(QApplication::palette());
    painter.setPen(QPen(colours.border, colours.borderWidth));
    painter.setBrush(colours.paper);
    painter.drawPath(outline());
    painter.translate(place_.body.topLeft() + QPoint(padding, padding));
    text_.draw(painter, colours.ink);
}

void Balloon::mousePressEvent(QMouseEvent*) {
    closeNow();
}

}  // namespace agent
