#include "platform/qt/heard_tip.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "platform/qt/text.h"
#include "platform/qt/tip_place.h"

namespace velmora::qt {
namespace {

using namespace std::chrono_literals;

constexpr int lettersInLine = 40;
constexpr qsizetype longest = 400;  // letters; eleven seconds of speech are fewer
constexpr auto shownFor = 6s;
constexpr auto shownWithChoicesFor = 12s;
constexpr auto leftAloneFor = 2s;  // since somebody has used it

QScreen* screenOf(QRect figure) {
    QScreen* screen = figure.isEmpty() ? nullptr : QGuiApplication::screenAt(figure.center());
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

// As wide as the text needs, up to a line's length.
void setText(QLabel& label, const QString& text, int widest) {
    const QFontMetrics metrics(label.font());
    label.setText(text);
    label.setFixedWidth(std::min(metrics.size(0, text).width() + 2, widest));
    label.setVisible(!text.isEmpty());
}

// Whoever hears the hint does not see what it introduces.
QString spokenHint(const QString& hint, const std::vector<HeardTipWindow::Choice>& choices) {
    QStringList captions;
    for (const auto& choice : choices) captions.append(shown(choice.caption));
    return captions.isEmpty() ? hint : hint + u' ' + captions.join(QStringLiteral(", "));
}

}  // namespace

HeardTipWindow::HeardTipWindow(std::function<QRect()> figure)
    : QFrame(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint),
      figure_(std::move(figure)) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    hint_.setFont(small);
    for (QLabel* label : {&label_, &hint_}) {
        label->setForegroundRole(QPalette::ToolTipText);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    layout_.addWidget(&label_);
    layout_.addWidget(&hint_);
    layout_.setSizeConstraint(QLayout::SetFixedSize);
    hiding_.setSingleShot(true);
    connect(&hiding_, &QTimer::timeout, this, [this] { hideUnlessUsed(); });
    setAccessibleName(tr("Hearing"));  // what it says, its labels tell
    // Owned by the toolkit from here on, and gone with the widget.
    QAccessible::registerAccessibleInterface(new QAccessibleWidget(this, QAccessible::Notification));
}

void HeardTipWindow::fill(const QString& text, std::vector<Choice> choices, const QString& hint) {
    for (QWidget* button : std::exchange(buttons_, {})) {
        layout_.removeWidget(button);
        button->hide();
        button->deleteLater();
    }
    const int widest = std::min(fontMetrics().averageCharWidth() * lettersInLine,
                                screenOf(figure_())->availableSize().width() * 2 / 5);
    setText(label_, text.size() > longest ? text.left(longest) + u'\u2026' : text, widest);
    setText(hint_, hint, widest);
    setWindowTitle(hint.isEmpty() ? text : text + QStringLiteral(". ") + hint);
    hint_.setAccessibleName(spokenHint(hint, choices));
    for (Choice& choice : choices) addChoice(std::move(choice));
    layout_.activate();
    adjustSize();
    follow();
    announce();
    raise();
}

void HeardTipWindow::addChoice(Choice choice) {
    const QString caption = fontMetrics().elidedText(shown(choice.caption), Qt::ElideRight,
                                                     fontMetrics().averageCharWidth() * lettersInLine);
    auto* button = new QPushButton(QString(caption).replace(u'&', QStringLiteral("&&")), this);
    button->setAccessibleName(shown(choice.caption));
    connect(button, &QPushButton::clicked, this, [this, pick = std::move(choice.pick)] {
        hide();
        pick();
    });
    layout_.addWidget(button);
    buttons_.push_back(button);
}

// Screen readers read a notification when it comes into view; of one that is there already they have to be
// told again.
void HeardTipWindow::announce() {
    if (!isVisible()) return show();
    QAccessibleEvent appeared(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&appeared);
}

void HeardTipWindow::tell(const std::string& text, std::vector<Choice> choices, const std::string& hint) {
    const bool choosing = !choices.empty();
    fill(shown(text), std::move(choices), choosing ? shown(hint) : QString());
    hiding_.start(choosing ? shownWithChoicesFor : shownFor);
}

void HeardTipWindow::tellListening(const std::string& hint) {
    hiding_.stop();
    fill(tr("Listening\u2026"), {}, shown(hint));
}

void HeardTipWindow::follow() {
    const QRect figure = figure_();
    move(placeTip(figure, size(), screenOf(figure)->availableGeometry()));
}

void HeardTipWindow::acceptKeyboard(bool accept) {
    if (QWindow* window = windowHandle()) window->setFlag(Qt::WindowDoesNotAcceptFocus, !accept);
}

void HeardTipWindow::takeKeyboard() {
    if (!isVisible() || buttons_.empty()) return;
    acceptKeyboard(true);
    activateWindow();
    buttons_.front()->setFocus(Qt::TabFocusReason);  // which shows where it is
}

void HeardTipWindow::hideUnlessUsed() {
    if (underMouse() || isActiveWindow()) return hiding_.start(leftAloneFor);
    hide();
}

void HeardTipWindow::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Escape:
            return hide();
        case Qt::Key_Up:
        case Qt::Key_Down:
            focusNextPrevChild(event->key() == Qt::Key_Down);
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (auto* button = qobject_cast<QPushButton*>(focusWidget())) button->click();
            return;
        default:
            return QFrame::keyPressEvent(event);
    }
}

void HeardTipWindow::mousePressEvent(QMouseEvent*) {
    hide();
    if (onDismissed) onDismissed();
}

void HeardTipWindow::hideEvent(QHideEvent* event) {
    acceptKeyboard(false);
    QFrame::hideEvent(event);
}

}  // namespace velmora::qt
