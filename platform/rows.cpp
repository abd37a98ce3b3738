#include "platform/rows.h"

#include <algorithm>

#include "base/failure.h"

namespace velmora {

Rows::Rows(std::vector<Row> designed, std::function<void()> changed)
    : designed_(std::move(designed)), rows_(designed_), changed_(changed ? std::move(changed) : [] {}) {}

Row& Rows::Add(Row row) {
    if (!row.Key.empty() && find(row.Key) != 0) throw Failure(errors::duplicateRowKey);
    rows_.push_back(std::move(row));
    changed_();
    return rows_.back();
}

const Row& Rows::Item(std::size_t index) const {
    if (index < 1 || index > rows_.size()) throw Failure(errors::objectNotSet);
    return rows_[index - 1];
}

const Row& Rows::Item(std::string_view key) const {
    return Item(find(key));
}

void Rows::Set(std::size_t index, Row row) {
    static_cast<void>(Item(index));
    const auto same = row.Key.empty() ? 0 : find(row.Key);
    if (same != 0 && same != index) throw Failure(errors::duplicateRowKey);
    rows_[index - 1] = std::move(row);
    changed_();
}

void Rows::Remove(std::size_t index) {
    static_cast<void>(Item(index));
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(index) - 1);
    changed_();
}

void Rows::Clear() {
    rows_.clear();
    changed_();
}

std::size_t Rows::find(std::string_view key) const {
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [key](const Row& row) { return row.Key == key; });
    return found == rows_.end() || key.empty() ? 0 : static_cast<std::size_t>(found - rows_.begin()) + 1;
}

void Rows::reset() {
    rows_ = designed_;
}

}  // namespace velmora
