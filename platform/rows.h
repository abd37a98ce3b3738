#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace velmora {

/// A row of a list, a node of a tree, an item of an image combo, a tab.
struct Row {
    std::string Key = {};  ///< unique in its control, or empty
    std::string Text = {};
    std::string Tag = {};
    int Icon = 0;  ///< number of a picture, 0 for none
    std::vector<std::string> SubItems = {};
    std::string Parent = {};  ///< key of the parent node; trees only
};

/// The rows of a control, counted from 1.
class Rows {
public:
    /// `changed` is called after every change.
    explicit Rows(std::vector<Row> designed = {}, std::function<void()> changed = {});

    std::size_t Count() const { return rows_.size(); }

    /// Adds the row at the end. Fails with 35602 if another row has its key.
    Row& Add(Row row);

    /// The row at the index, or with the key. Fails with 91 if there is none.
    const Row& Item(std::size_t index) const;
    const Row& Item(std::string_view key) const;
    /// Replaces the row's content, its key included. Fails with 91, or 35602.
    void Set(std::size_t index, Row row);

    /// Fails with 91 if there is none.
    void Remove(std::size_t index);
    void Clear();

    /// Index of the row with that key, 0 if there is none.
    std::size_t find(std::string_view key) const;
    const std::vector<Row>& all() const { return rows_; }
    void reset();

private:
    void noteKeys();

    /// Lets a set of strings be asked for a view of one.
    struct KeyHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view key) const { return std::hash<std::string_view>{}(key); }
    };

    std::vector<Row> designed_;
    std::vector<Row> rows_;
    std::unordered_set<std::string, KeyHash, std::equal_to<>> keys_;
    std::function<void()> changed_;
};

}  // namespace velmora
