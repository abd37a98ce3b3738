#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/control.h"
#include "platform/files.h"

namespace velmora {

// The control kinds with rows. The table in controls.h says which change raises what.

struct ComboBoxDesign {
    std::string Text = {};
    std::vector<std::string> List = {};
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
};

/// A text with a list of proposals. Rows count from 0; no row chosen is -1.
class ComboBox : public Control {
public:
    using Design = ComboBoxDesign;
    ComboBox(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});

    Event Click;
    Event Change;
    Property<std::string> Text;

    int ListCount() const;
    /// Empty for a row that is not there.
    std::string List(int row) const;
    /// Replaces the row; one behind the last adds a row. Fails with 5 elsewhere.
    void setList(int row, std::string text);
    void AddItem(std::string text);
    /// Fails with 5 if there is no such row.
    void RemoveItem(int row);
    void Clear();

    int ListIndex() const;
    /// Chooses a row, takes its text and raises Click; -1 chooses none. The row that is chosen already raises
    /// nothing, but its text, which may have changed, is taken. Fails with 5 for a row that is not there.
    void setListIndex(int row);

    Event& mainEvent() { return Click; }
    std::string_view kind() const override { return "ComboBox"; }
    std::string mainValue() const override { return Text.peek(); }
    std::vector<Row> listedRows() const override;
    int firstRow() const override { return 0; }

protected:
    bool typed(std::string_view text) override;
    bool selected(int row) override;
    void reset() override;

private:
    bool has(int row) const { return row >= 0 && row < static_cast<int>(rows_.size()); }

    const std::vector<std::string> designed_;
    std::vector<std::string> rows_;
    int chosen_ = -1;
};

struct ListDesign {
    std::vector<Row> Rows = {};
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
};

/// What list, tree, image combo and tab strip share: keyed rows, counted from 1, and one of them chosen.
class RowControl : public Control {
public:
    using Design = ListDesign;
    RowControl(Form& form, std::string_view name, const Design& design, std::optional<int> index);

    Event Click;
    Event& mainEvent() { return Click; }

    /// The rows, to be changed in place.
    Rows& ListItems();
    const Rows& peekRows() const { return rows_; }

    /// Index of the chosen row, 0 if none is. A program's choice raises nothing.
    Property<int> Selected;
    /// The chosen row. Fails with 91 if none is.
    const Row& SelectedItem() const;

    std::string mainValue() const override;
    std::vector<Row> listedRows() const override { return rows_.all(); }

protected:
    bool selected(int row) override;
    void reset() override;

private:
    Rows rows_;
};

class ListView : public RowControl {
public:
    ListView(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {})
        : RowControl(form, name, design, index) {}

    /// A mouse button was let go over a row, or the row's menu was asked for by keyboard. Arrow keys choose a
    /// row without it.
    Event MouseUp;
    /// What the arrow keys do: chooses the row, as `select` does, but no button is let go.
    bool moveTo(int row) { return usable() && RowControl::selected(row); }
    std::string_view kind() const override { return "ListView"; }

protected:
    bool selected(int row) override;
};

/// A tree: each row names its parent's key.
class TreeView : public RowControl {
public:
    TreeView(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {})
        : RowControl(form, name, design, index) {}
    std::string_view kind() const override { return "TreeView"; }
};

class ImageCombo : public RowControl {
public:
    ImageCombo(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {})
        : RowControl(form, name, design, index) {}
    std::string_view kind() const override { return "ImageCombo"; }
    int firstRow() const override { return 0; }

protected:
    bool selected(int row) override { return RowControl::selected(row + 1); }
};

/// Tabs; the first is chosen when the form loads.
class TabStrip : public RowControl {
public:
    TabStrip(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {})
        : RowControl(form, name, design, index) {}
    std::string_view kind() const override { return "TabStrip"; }

protected:
    void formLoads() override { Selected.adopt(peekRows().Count() > 0 ? 1 : 0); }
};

struct FileListDesign {
    std::string Pattern = "*";
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
};

/// The plain files of a folder, in ascending byte order of their names.
class FileListBox : public RowControl {
public:
    using Design = FileListDesign;
    FileListBox(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});

    Property<std::string> Path;
    /// "*" and what the names have to end with, letters A to Z of either case.
    Property<std::string> Pattern;

    /// Takes the names from the folder as they are now; an absent folder has none. Fails with 75 if the
    /// folder can't be read.
    void Refresh(const Files& files);
    std::string_view kind() const override { return "FileListBox"; }
};

}  // namespace velmora
