#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <QStringList>
#include <vector>

#include "platform/rows.h"

namespace velmora::qt {

/// Rows of a control as Qt's item views read them: a list with columns, or a tree by the keys of the parents.
///
/// It shows a copy of the rows, so that a view never sees the control between two changes.
class RowsModel : public QAbstractItemModel {
public:
    enum class Shape { list, tree };

    /// `headers` name the columns, and may be empty; `pictures` are files, the first one for icon number 1.
    RowsModel(Shape shape, QStringList headers, const QStringList& pictures);

    /// Shows these rows; false, and nothing happens in the views, if they are shown already. A node whose
    /// parent does not stand before it is a root.
    bool setRows(const std::vector<Row>& rows);

    /// Whether the row of that number is the same here and there: a person can't pick a row that has changed
    /// since it was last shown.
    bool agrees(const std::vector<Row>& rows, int number) const;

    /// Number of the row, counted from 1 in the order given; 0 for none.
    static int number(const QModelIndex& index);
    /// Invalid if there is no such row.
    QModelIndex indexOf(int number) const;
    const std::vector<Row>& rows() const { return rows_; }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Place {
        int parent = 0;             // number of the row, 0: a root
        int position = 0;           // among the children of the parent
        std::vector<int> children;  // numbers
    };

    void arrange();

    const Shape shape_;
    const QStringList headers_;
    std::vector<QIcon> icons_;
    std::vector<Row> rows_;
    std::vector<Place> places_{1};  // by number; the first is the invisible root
    int columns_ = 1;
};

}  // namespace velmora::qt
