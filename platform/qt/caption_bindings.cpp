#include "platform/qt/caption_bindings.h"

#include <QLayout>

#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

constexpr int twipsPerPixel = 15;

// A widget that is given the text it has would measure and paint itself anew.
template <class Widget>
void setText(Widget& widget, const std::string& text) {
    const QString given = shown(text);
    if (widget.text() != given) widget.setText(given);
}

constexpr const char* showsProperty = "shows";
constexpr const char* keepsRoomProperty = "keepsRoom";

void press(QAbstractButton& button, bool down) {
    button.setCheckable(true);
    button.setChecked(down);
}

void pressButtonsOf(const QWidget& frame, bool inView) {
    for (auto* button : frame.window()->findChildren<QAbstractButton*>()) {
        if (button->property(showsProperty).toString() == frame.objectName()) press(*button, inView);
    }
}

void place(QWidget& widget, const Frame& model) {
    const QWidget* parent = widget.parentWidget();
    const QPoint place(model.Left.peek() / twipsPerPixel, model.Top.peek() / twipsPerPixel);
    const bool moved = model.Left.peek() != 0 || model.Top.peek() != 0;
    if (parent && !parent->layout() && moved) widget.move(place);
    pressButtonsOf(widget, model.inView());
    // Hidden for good it takes no room, out of view it does, and as a page that is hidden and shown by turns.
    QSizePolicy policy = widget.sizePolicy();
    const bool isPage = widget.property(keepsRoomProperty).toBool();
    policy.setRetainSizeWhenHidden(isPage || (model.Visible.peek() && !model.inView()));
    if (policy != widget.sizePolicy()) widget.setSizePolicy(policy);
}

}  // namespace

LabelBinding::LabelBinding(Label& model, QLabel& widget, Loop& loop) : BindingOf(model, widget, loop) {
    widget.setTextFormat(Qt::PlainText);
}

void LabelBinding::show() {
    setText(widget_, model_.Caption.peek());
}

ButtonBinding::ButtonBinding(Button& model, QAbstractButton& widget, Loop& loop)
    : BindingOf(model, widget, loop) {
    QObject::connect(&widget, &QAbstractButton::clicked, context(),
                     [this] { enter([this] { model_.click(); }); });
}

void ButtonBinding::show() {
    setText(widget_, model_.Caption.peek());
    // A click on a pressed button releases it, although its frame stays.
    const QString frame = widget_.property(showsProperty).toString();
    if (frame.isEmpty()) return;
    if (const auto* shows = widget_.window()->findChild<QWidget*>(frame)) press(widget_, !shows->isHidden());
}

PictureBinding::PictureBinding(Picture& model, QAbstractButton& widget, Loop& loop)
    : BindingOf(model, widget, loop) {
    QObject::connect(&widget, &QAbstractButton::clicked, context(),
                     [this] { enter([this] { model_.click(); }); });
}

void PictureBinding::show() {
    widget_.setAccessibleName(shown(model_.Caption.peek()));
}

CheckBoxBinding::CheckBoxBinding(CheckBox& model, QCheckBox& widget, Loop& loop)
    : BindingOf(model, widget, loop) {
    QObject::connect(&widget, &QAbstractButton::clicked, context(),
                     [this] { enter([this] { model_.click(); }); });
}

void CheckBoxBinding::show() {
    setText(widget_, model_.Caption.peek());
    widget_.setChecked(model_.Value.peek() != 0);
}

OptionButtonBinding::OptionButtonBinding(OptionButton& model, QRadioButton& widget, Loop& loop)
    : BindingOf(model, widget, loop) {
    QObject::connect(&widget, &QAbstractButton::clicked, context(),
                     [this] { enter([this] { model_.click(); }); });
}

void OptionButtonBinding::show() {
    setText(widget_, model_.Caption.peek());
    // An exclusive button can't be turned off, but a program may turn off the whole group.
    const bool exclusive = widget_.autoExclusive();
    widget_.setAutoExclusive(false);
    widget_.setChecked(model_.Value.peek());
    widget_.setAutoExclusive(exclusive);
}

void FrameBinding::show() {
    place(widget_, model_);
}

void GroupBinding::show() {
    widget_.setTitle(shown(model_.Caption.peek()));
    place(widget_, model_);
}

void StatusBarBinding::show() {
    const QString text = shown(model_.Text.peek());
    if (widget_.currentMessage() != text) widget_.showMessage(text);
}

}  // namespace velmora::qt
