#include "platform/qt/focused_rows.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <QTreeView>

namespace velmora::qt {
namespace {

// A tree counts the rows in view, which only its rectangles tell.
QAccessibleInterface* cellOf(QAccessibleInterface& rows, QAbstractItemView& view, const QModelIndex& at) {
    if (qobject_cast<QTreeView*>(&view) != nullptr) {
        const QPoint point = view.viewport()->mapToGlobal(view.visualRect(at).center());
        return rows.childAt(point.x(), point.y());
    }
    auto* cells = rows.tableInterface();
    return cells != nullptr ? cells->cellAt(at.row(), at.column()) : nullptr;
}

}  // namespace

bool FocusedRows::eventFilter(QObject* watched, QEvent* event) {
    const bool comes = event->type() == QEvent::FocusIn;
    if ((!comes && event->type() != QEvent::FocusOut) || !(tell_ || QAccessible::isActive())) return false;
    if (auto* box = qobject_cast<QComboBox*>(watched); box != nullptr && !box->isEditable()) {
        box->disconnect(this);
        if (comes) watch(*box);
    } else if (auto* view = qobject_cast<QAbstractItemView*>(watched); view != nullptr && comes) {
        // After the toolkit has told of the focus itself.
        QTimer::singleShot(0, this, [this, still = QPointer(view)] {
            if (still && still->hasFocus()) tellRow(*still, still->currentIndex());
        });
    }
    return false;
}

void FocusedRows::watch(QComboBox& box) {
    const auto changed = [this, still = QPointer(&box)] {
        if (still) tellChoice(*still);
    };
    QObject::connect(&box, &QComboBox::currentIndexChanged, this, changed);
    QTimer::singleShot(0, this, changed);
}

void FocusedRows::tellChoice(QComboBox& box) {
    if (box.hasFocus() && !box.view()->isVisible())
        tellRow(*box.view(), box.model()->index(box.currentIndex(), box.modelColumn(), box.rootModelIndex()));
}

void FocusedRows::tellRow(QAbstractItemView& view, const QModelIndex& at) {
    auto* rows = QAccessible::queryAccessibleInterface(&view);
    auto* cell = rows != nullptr && at.isValid() ? cellOf(*rows, view, at) : nullptr;
    if (cell == nullptr) return;
    QAccessibleEvent focused(&view, QAccessible::Focus);
    focused.setChild(rows->indexOfChild(cell));
    tell_ ? tell_(&focused) : QAccessible::updateAccessibility(&focused);
}

}  // namespace velmora::qt
