#include "platform/rows.h"

#include <algorithm>

#include "base/failure.h"

namespace velmora {

Rows::Rows(std::vector<Row> designed, std::function<void()> changed)
    : designed_(std::move(designed)), rows_(designed_), changed_(changed ? std::move(changed) : [] {}) {
    noteKeys();
}

void Rows::noteKeys() {
    keys_.clear();
    for (const Row& row : rows_) keys_.insert(row.Key);
}

Row& Rows::Add(Row row) {
    if (!row.Key.empty() && !keys_.insert(row.Key).second) throw Failure(errors::duplicateRowKey);
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
    keys_.erase(rows_[index - 1].Key);
    keys_.insert(row.Key);
    rows_[index - 1] = std::move(row);
    changed_();
}

void Rows::Remove(std::size_t index) {
    static_cast<void>(Item(index));
    keys_.erase(rows_[index - 1].Key);
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(index) - 1);
    changed_();
}

void Rows::Clear() {
    rows_.clear();
    keys_.clear();
    changed_();
}

std::size_t Rows::find(std::string_view key) const {
    if (key.empty() || !keys_.contains(key)) return 0;
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [key](const Row& row) { return row.Key == key; });
    return found == rows_.end() ? 0 : static_cast<std::size_t>(found - rows_.begin()) + 1;
}

void Rows::reset() {
    rows_ = designed_;
    noteKeys();
}

}  // namespace velmora
