#pragma once

#include <QWidget>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/form.h"
#include "platform/qt/binding.h"

namespace velmora::qt {

/// The name of the widget that shows the control: its own name, `cmdFrames_2` for a member of an array.
QString widgetName(const Component& component);

/// Ties the controls of a form to the widgets of a window that have their names. Both must outlive it.
///
/// Widgets whose name begins with `view` belong to the window alone, as do those without a name.
class Binder {
public:
    Binder(const Form& form, QWidget& window, Loop& loop);

    /// Nothing passes any more in either direction.
    void detach();

    /// The widget that shows the control; nullptr if none does.
    QWidget* widgetOf(const Control& control) const;

    /// Names of the controls that no widget shows, and of the widgets that show no control. Timers and
    /// lists of files are not to be seen.
    std::vector<std::string> unbound() const;

private:
    void nameForAssistiveTools();

    const Form& form_;
    QWidget& window_;
    std::map<const Control*, QWidget*> widgets_;
    std::vector<std::unique_ptr<Binding>> bindings_;
};

}  // namespace velmora::qt
