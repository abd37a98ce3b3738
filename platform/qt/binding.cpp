#include "platform/qt/binding.h"

#include <QScopedValueRollback>
#include <QTextDocument>

#include "platform/qt/text.h"

namespace velmora::qt {

Binding::Binding(Control& control, QWidget& widget, Loop& loop, Pace pace)
    : control_(control), widget_(widget), loop_(loop), pace_(pace), standingTip_(widget.toolTip()) {
    control.show(this);
}

Binding::~Binding() {
    detach();
}

void Binding::detach() {
    if (!attached_) return;
    attached_ = false;
    control_.show(nullptr);
}

void Binding::refresh() {
    if (pace_ == Pace::atOnce) return showNow();
    if (waiting_) return;
    waiting_ = true;
    QMetaObject::invokeMethod(
        &context_, [this] { showNow(); }, Qt::QueuedConnection);
}

void Binding::showNow() {
    waiting_ = false;
    if (!attached_ || showing_) return;
    const QScopedValueRollback showing(showing_, true);
    showCommon();
    show();
}

void Binding::showCommon() {
    const QString tip = plainTip(shown(control_.ToolTipText.peek()));
    widget_.setToolTip(tip.isEmpty() ? standingTip_ : tip);
    widget_.setEnabled(control_.Enabled.peek());
    const bool visible = control_.Visible.peek() && inView();
    if (widget_.isHidden() == visible) widget_.setVisible(visible);
}

void Binding::enter(const Loop::Handler& entry) {
    if (!listening()) return;
    loop_.turn(entry);
    refresh();
}

QString plainTip(const QString& text) {
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
}

}  // namespace velmora::qt
