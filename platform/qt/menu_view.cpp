#include "platform/qt/menu_view.h"

#include <QCursor>
#include <algorithm>

#include "platform/qt/binder.h"
#include "platform/qt/later.h"
#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

QAction* addEntry(QMenu& into, Menu& entry, Loop& loop) {
    const QString caption = shown(entry.Caption.peek());
    if (entry.separator()) return into.addSeparator();
    if (!entry.entries().empty()) {
        QMenu* sub = into.addMenu(caption);
        addEntries(*sub, entry, loop);
        sub->menuAction()->setEnabled(entry.Enabled.peek() && opensAnything(entry));
        return sub->menuAction();
    }
    QAction* action = into.addAction(caption);
    action->setEnabled(entry.Enabled.peek());
    action->setCheckable(entry.Checked.peek());
    action->setChecked(entry.Checked.peek());
    // Qt checks and unchecks what is picked by itself; the menu is built anew before that can be seen.
    QObject::connect(action, &QAction::triggered, action,
                     [&entry, &loop] { loop.turn([&entry] { entry.click(); }); });
    return action;
}

}  // namespace

bool opensAnything(const Menu& menu) {
    return std::any_of(menu.entries().begin(), menu.entries().end(),
                       [](const Menu* entry) { return entry->Visible.peek() && !entry->separator(); });
}

void addEntries(QMenu& into, const Menu& menu, Loop& loop) {
    for (Menu* entry : menu.entries()) {
        if (entry->Visible.peek()) addEntry(into, *entry, loop)->setObjectName(widgetName(*entry));
    }
}

MenuView::~MenuView() {
    close();
}

void MenuView::close() {
    if (!menu_) return;
    menu_->close();
    loop_.retire(std::exchange(menu_, nullptr));
}

void MenuView::open(const Menu& menu) {
    close();
    menu_ = std::shared_ptr<QMenu>(new QMenu, DeleteLater{});
    menu_->setObjectName(widgetName(menu));
    menu_->setSeparatorsCollapsible(true);
    addEntries(*menu_, menu, loop_);
    if (!opensAnything(menu)) return;
    menu_->popup(position ? position() : QCursor::pos());
    // Over a window that takes no focus nothing else would give the menu the keyboard.
    menu_->activateWindow();
}

}  // namespace velmora::qt
