#pragma once

#include <QAccessible>
#include <QModelIndex>
#include <QObject>
#include <functional>
#include <utility>

class QAbstractItemView;
class QComboBox;

namespace velmora::qt {

/// Tells screen readers which row of a list, a calendar or a closed combo box has the focus, when the focus
/// comes and when the row changes. The toolkit alone tells neither of them which row that is when the focus
/// comes, and of a closed combo box never. An event filter for the application.
class FocusedRows : public QObject {
public:
    using Tell = std::function<void(QAccessibleEvent*)>;

    /// `tell` is told in place of screen readers, which are while one is there.
    explicit FocusedRows(Tell tell = {}) : tell_(std::move(tell)) {}

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch(QComboBox& box);
    void tellChoice(QComboBox& box);
    void tellRow(QAbstractItemView& view, const QModelIndex& at);

    Tell tell_;
};

}  // namespace velmora::qt
