#pragma once

#include <QPoint>
#include <functional>
#include <map>
#include <memory>
#include <span>

#include "platform/form.h"
#include "platform/menu.h"
#include "platform/qt/focused_rows.h"
#include "platform/qt/menu_view.h"
#include "platform/qt/views.h"

namespace velmora::qt {

class FormWindow;

/// Shows the forms of a program in windows with the program's icon, and its menus. A form that has no view is
/// not shown.
///
/// A window is made when its form is first shown, and goes when the form is unloaded. Forms and loop outlive
/// this; it adds and removes itself as a view.
class QtWindows : public ProgramView {
public:
    QtWindows(Forms& forms, std::span<const View> views);
    ~QtWindows() override;

    /// The window of the form; nullptr while it has none.
    QWidget* window(const Form& form) const;

    /// The menus, to be told where they open.
    MenuView& menus() { return menus_; }

    void formChanged(Form& form, FormChange change) override;
    void formRaised(Form& form) override { show(form); }
    void focusMoved(Control& control) override;
    void menuPopped(Menu& menu) override { menus_.open(menu); }

private:
    class Shown;

    void show(Form& form);
    void minimise(Form& form);
    void hide(Form& form);
    void drop(Form& form);

    Forms& forms_;
    std::span<const View> views_;
    std::map<const Form*, std::shared_ptr<Shown>> shown_;
    MenuView menus_;
    FocusedRows focusedRows_;
};

}  // namespace velmora::qt
