#pragma once

#include <QMenuBar>
#include <memory>
#include <vector>

#include "platform/form.h"
#include "platform/loop.h"

namespace velmora::qt {

/// Shows menus of a form in the menu bars of its window: those that the bar's dynamic property "menus" names,
/// in that order. Their entries are shown as they are when a menu opens. Form and window must outlive it.
class MenuBarView {
public:
    MenuBarView(const Form& form, const QWidget& window, Loop& loop);
    ~MenuBarView();
    MenuBarView(const MenuBarView&) = delete;
    MenuBarView& operator=(const MenuBarView&) = delete;

    /// Nothing passes any more in either direction.
    void detach();

private:
    class Title;

    void fill(QMenuBar& bar, const Form& form, Loop& loop);

    std::vector<std::unique_ptr<Title>> titles_;
};

}  // namespace velmora::qt
