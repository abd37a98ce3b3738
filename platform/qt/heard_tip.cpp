#include "platform/qt/heard_tip.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

constexpr int widest = 320;
constexpr std::chrono::seconds shownFor{6};

}  // namespace

HeardTipWindow::HeardTipWindow()
    : QFrame(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAccessibleName(QStringLiteral("What was heard"));
    label_.setForegroundRole(QPalette::ToolTipText);
    label_.setTextFormat(Qt::PlainText);
    label_.setWordWrap(true);
    label_.setMaximumWidth(widest);
    layout_.addWidget(&label_);
    layout_.setSizeConstraint(QLayout::SetFixedSize);
    hiding_.setSingleShot(true);
    connect(&hiding_, &QTimer::timeout, this, &QWidget::hide);
}

void HeardTipWindow::fill(const QString& text, std::vector<Choice> choices) {
    for (QWidget* button : std::exchange(buttons_, {})) {
        button->hide();
        button->deleteLater();
    }
    label_.setText(text);
    for (Choice& choice : choices) {
        auto* button = new QPushButton(shown(choice.caption).replace(u'&', QStringLiteral("&&")), this);
        button->setFocusPolicy(Qt::NoFocus);
        connect(button, &QPushButton::clicked, this, [this, pick = std::move(choice.pick)] {
            hide();
            pick();
        });
        layout_.addWidget(button);
        buttons_.push_back(button);
    }
    adjustSize();
    constexpr QPoint beside(16, 16);
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen) screen = QGuiApplication::primaryScreen();
    QPoint place = QCursor::pos() + beside;
    if (screen) {
        const QRect room = screen->availableGeometry();
        place.setX(std::max(room.left(), std::min(place.x(), room.right() - width())));
        place.setY(std::max(room.top(), std::min(place.y(), room.bottom() - height())));
    }
    move(place);
    show();
}

void HeardTipWindow::tell(const std::string& text, std::vector<Choice> choices) {
    fill(shown(text), std::move(choices));
    hiding_.start(shownFor);
}

void HeardTipWindow::tellListening() {
    hiding_.stop();
    fill(QStringLiteral("Listening\u2026"), {});
}

}  // namespace velmora::qt
