#include "platform/qt/rows_model.h"

#include <algorithm>
#include <unordered_map>

#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

bool same(const Row& one, const Row& other) {
    return one.Key == other.Key && one.Text == other.Text && one.Icon == other.Icon &&
           one.Parent == other.Parent && one.SubItems == other.SubItems;
}

}  // namespace

RowsModel::RowsModel(Shape shape, QStringList headers, const QStringList& pictures)
    : shape_(shape), headers_(std::move(headers)) {
    for (const QString& picture : pictures) icons_.emplace_back(picture);
}

bool RowsModel::setRows(const std::vector<Row>& rows) {
    if (std::equal(rows.begin(), rows.end(), rows_.begin(), rows_.end(), same)) return false;
    beginResetModel();
    rows_ = rows;
    arrange();
    endResetModel();
    return true;
}

bool RowsModel::agrees(const std::vector<Row>& rows, int number) const {
    const auto at = static_cast<std::size_t>(number) - 1;
    return number > 0 && at < rows.size() && at < rows_.size() && same(rows[at], rows_[at]);
}

void RowsModel::arrange() {
    std::unordered_map<std::string_view, int> numbers;
    places_.assign(rows_.size() + 1, {});
    columns_ = std::max(1, static_cast<int>(headers_.size()));
    for (int number = 1; number <= static_cast<int>(rows_.size()); ++number) {
        const Row& row = rows_[static_cast<std::size_t>(number) - 1];
        Place& place = places_[static_cast<std::size_t>(number)];
        if (shape_ == Shape::tree && !row.Parent.empty()) {
            const auto found = numbers.find(row.Parent);
            place.parent = found == numbers.end() ? 0 : found->second;
        }
        auto& siblings = places_[static_cast<std::size_t>(place.parent)].children;
        place.position = static_cast<int>(siblings.size());
        siblings.push_back(number);
        if (!row.Key.empty()) numbers.emplace(row.Key, number);
        columns_ = std::max(columns_, 1 + static_cast<int>(row.SubItems.size()));
    }
}

int RowsModel::number(const QModelIndex& index) {
    return index.isValid() ? static_cast<int>(index.internalId()) : 0;
}

QModelIndex RowsModel::indexOf(int number) const {
    if (number < 1 || number > static_cast<int>(rows_.size())) return {};
    return createIndex(places_[static_cast<std::size_t>(number)].position, 0, static_cast<quintptr>(number));
}

QModelIndex RowsModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent)) return {};
    const auto& children = places_[static_cast<std::size_t>(number(parent))].children;
    return createIndex(row, column, static_cast<quintptr>(children[static_cast<std::size_t>(row)]));
}

QModelIndex RowsModel::parent(const QModelIndex& child) const {
    return indexOf(places_[static_cast<std::size_t>(number(child))].parent);
}

int RowsModel::rowCount(const QModelIndex& parent) const {
    if (parent.column() > 0) return 0;
    return static_cast<int>(places_[static_cast<std::size_t>(number(parent))].children.size());
}

int RowsModel::columnCount(const QModelIndex&) const {
    return columns_;
}

QVariant RowsModel::data(const QModelIndex& index, int role) const {
    const int number = RowsModel::number(index);
    if (number == 0) return {};
    const Row& row = rows_[static_cast<std::size_t>(number) - 1];
    const auto column = static_cast<std::size_t>(index.column());
    if (role == Qt::DisplayRole) {
        if (column == 0) return shown(row.Text);
        return column <= row.SubItems.size() ? shown(row.SubItems[column - 1]) : QString();
    }
    const bool pictured = row.Icon > 0 && row.Icon <= static_cast<int>(icons_.size());
    if (role == Qt::DecorationRole && column == 0 && pictured)
        return icons_[static_cast<std::size_t>(row.Icon) - 1];
    return {};
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const bool named = orientation == Qt::Horizontal && role == Qt::DisplayRole && section < headers_.size();
    return named ? headers_[section] : QVariant();
}

}  // namespace velmora::qt
