#pragma once

#include <QMenu>
#include <QPoint>
#include <functional>
#include <memory>

#include "platform/loop.h"
#include "platform/menu.h"

namespace velmora::qt {

/// Whether a menu has an entry to pick: one that is visible and no separator.
bool opensAnything(const Menu& menu);

/// Adds the menu's visible entries, as they are now, with those below them. Picking one clicks its model,
/// which must be there as long as the entry is.
void addEntries(QMenu& into, const Menu& menu, Loop& loop);

/// Shows one menu at a time, as it is when it opens: what is hidden is left out, and no separator is left
/// over.
class MenuView {
public:
    explicit MenuView(Loop& loop) : loop_(loop) {}
    ~MenuView();

    /// Opens the menu, and closes the one that is open.
    void open(const Menu& menu);

    /// The menu that was opened last; nullptr before the first one.
    QMenu* opened() const { return menu_.get(); }

    /// Where a menu opens; at the pointer if this is not set.
    std::function<QPoint()> position;

private:
    void close();

    Loop& loop_;
    std::shared_ptr<QMenu> menu_;
};

}  // namespace velmora::qt
