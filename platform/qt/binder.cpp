#include "platform/qt/binder.h"

#include <QAbstractItemView>
#include <QMenuBar>
#include <algorithm>
#include <array>
#include <set>

#include "platform/qt/caption_bindings.h"
#include "platform/qt/date_bindings.h"
#include "platform/qt/row_bindings.h"
#include "platform/qt/text.h"
#include "platform/qt/text_bindings.h"

namespace velmora::qt {
namespace {

struct Kind {
    std::string_view control;
    const QMetaObject* widget;
    std::unique_ptr<Binding> (*bind)(Control&, QWidget&, Loop&);
};

template <class B>
Kind kind(std::string_view control) {
    return {control, &B::Widget::staticMetaObject,
            [](Control& model, QWidget& widget, Loop& loop) -> std::unique_ptr<Binding> {
                return std::make_unique<B>(static_cast<typename B::Model&>(model),
                                           static_cast<typename B::Widget&>(widget), loop);
            }};
}

// Which binding serves which kinds. Of two that fit, the first one does.
const std::array kinds{
    kind<LabelBinding>("Label"),
    kind<ButtonBinding>("Button"),
    kind<PictureBinding>("Picture"),
    kind<CheckBoxBinding>("CheckBox"),
    kind<OptionButtonBinding>("OptionButton"),
    kind<GroupBinding>("Frame"),
    kind<FrameBinding>("Frame"),
    kind<StatusBarBinding>("StatusBar"),
    kind<LineEditBinding>("TextBox"),
    kind<PlainTextEditBinding>("TextBox"),
    kind<PlainTextEditBinding>("RichTextBox"),
    kind<ComboBoxBinding>("ComboBox"),
    kind<DTPickerBinding>("DTPicker"),
    kind<MonthViewBinding>("MonthView"),
    kind<ListViewBinding>("ListView"),
    kind<TreeViewBinding>("TreeView"),
    kind<ImageComboBinding>("ImageCombo"),
    kind<TabStripBinding>("TabStrip"),
};

std::unique_ptr<Binding> bind(Control& control, QWidget& widget, Loop& loop) {
    const auto fits = [&](const Kind& kind) {
        return kind.control == control.kind() && widget.metaObject()->inherits(kind.widget);
    };
    const auto found = std::find_if(kinds.begin(), kinds.end(), fits);
    return found == kinds.end() ? nullptr : found->bind(control, widget, loop);
}

bool belongsToWindowAlone(const QWidget& widget) {
    const QString name = widget.objectName();
    if (name.isEmpty() || name.startsWith(QStringLiteral("view")) || name.startsWith(QStringLiteral("qt_")))
        return true;
    // The parts that a widget is made of are not the window's.
    const QWidget* parent = widget.parentWidget();
    return qobject_cast<const QAbstractScrollArea*>(parent) || qobject_cast<const QCalendarWidget*>(parent) ||
           qobject_cast<const QTabBar*>(parent) || qobject_cast<const QMenuBar*>(parent) ||
           qobject_cast<const QMenu*>(&widget);
}

}  // namespace

QString widgetName(const Component& component) {
    const QString name = shown(component.name());
    return component.index() ? name + u'_' + QString::number(*component.index()) : name;
}

Binder::Binder(const Form& form, QWidget& window, Loop& loop) : form_(form), window_(window) {
    for (Control* control : form.controls()) {
        auto* widget = window.findChild<QWidget*>(widgetName(*control));
        auto binding = widget ? bind(*control, *widget, loop) : nullptr;
        if (!binding) continue;
        binding->showNow();
        widgets_.emplace(control, widget);
        bindings_.push_back(std::move(binding));
    }
    nameForAssistiveTools();
}

void Binder::detach() {
    for (const auto& binding : bindings_) binding->detach();
}

QWidget* Binder::widgetOf(const Control& control) const {
    const auto found = widgets_.find(&control);
    return found == widgets_.end() ? nullptr : found->second;
}

std::vector<std::string> Binder::unbound() const {
    std::vector<std::string> names;
    std::set<const QWidget*> bound;
    for (const Control* control : form_.controls()) {
        const auto found = widgets_.find(control);
        if (found != widgets_.end()) {
            bound.insert(found->second);
        } else if (control->kind() != "Timer" && control->kind() != "FileListBox") {
            names.push_back(control->displayName());
        }
    }
    for (const QWidget* widget : window_.findChildren<QWidget*>()) {
        if (!bound.contains(widget) && !belongsToWindowAlone(*widget))
            names.push_back(typedBytes(widget->objectName()));
    }
    return names;
}

// Widgets with a caption or a label of their own already have a name.
void Binder::nameForAssistiveTools() {
    std::set<const QWidget*> labelled;
    for (const QLabel* label : window_.findChildren<QLabel*>()) labelled.insert(label->buddy());
    for (const auto& [control, widget] : widgets_) {
        const bool named = labelled.contains(widget) || control->property("Caption");
        if (!named && widget->accessibleName().isEmpty()) widget->setAccessibleName(widget->toolTip());
    }
}

}  // namespace velmora::qt
