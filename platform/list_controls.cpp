#include "platform/list_controls.h"

#include <utility>

#include "base/failure.h"

namespace velmora {

ComboBox::ComboBox(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Control(form, name, index, design.Enabled, design.Visible, design.ToolTipText),
      Text(*this, "Text", design.Text, &Change),
      designed_(design.List),
      rows_(designed_) {}

int ComboBox::ListCount() const {
    touch();
    return static_cast<int>(rows_.size());
}

std::string ComboBox::List(int row) const {
    touch();
    return has(row) ? rows_[static_cast<std::size_t>(row)] : std::string();
}

void ComboBox::setList(int row, std::string text) {
    touch();
    if (row == static_cast<int>(rows_.size())) return AddItem(std::move(text));
    if (!has(row)) throw Failure(errors::invalidCall);
    rows_[static_cast<std::size_t>(row)] = std::move(text);
    refreshView();
}

void ComboBox::AddItem(std::string text) {
    touch();
    rows_.push_back(std::move(text));
    refreshView();
}

void ComboBox::RemoveItem(int row) {
    touch();
    if (!has(row)) throw Failure(errors::invalidCall);
    rows_.erase(rows_.begin() + row);
    chosen_ = chosen_ == row ? -1 : chosen_ > row ? chosen_ - 1 : chosen_;
    refreshView();
}

void ComboBox::Clear() {
    touch();
    rows_.clear();
    chosen_ = -1;
    Text.adopt({});
}

int ComboBox::ListIndex() const {
    touch();
    return chosen_;
}

void ComboBox::setListIndex(int row) {
    touch();
    if (row != -1 && !has(row)) throw Failure(errors::invalidCall);
    const bool moved = std::exchange(chosen_, row) != row;
    if (row == -1 && !moved) return;
    Text.adopt(List(row));
    if (row != -1 && moved) Click.raise();
}

std::vector<Row> ComboBox::listedRows() const {
    std::vector<Row> rows;
    rows.reserve(rows_.size());
    for (const std::string& text : rows_) rows.push_back({.Text = text});
    return rows;
}

bool ComboBox::typed(std::string_view text) {
    if (text == Text.peek()) return true;
    chosen_ = -1;
    Text.adopt(std::string(text));
    Change.raise();
    return true;
}

bool ComboBox::selected(int row) {
    if (!has(row)) return false;
    chosen_ = row;
    Text.adopt(rows_[static_cast<std::size_t>(row)]);
    Click.raise();
    return true;
}

void ComboBox::reset() {
    Control::reset();
    rows_ = designed_;
    chosen_ = -1;
}

RowControl::RowControl(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Control(form, name, index, design.Enabled, design.Visible, design.ToolTipText),
      Selected(*this, "Selected", 0),
      rows_(design.Rows, [this] {
          if (Selected.peek() > static_cast<int>(rows_.Count())) Selected.adopt(0);
          refreshView();
      }) {}

Rows& RowControl::ListItems() {
    touch();
    return rows_;
}

const Row& RowControl::SelectedItem() const {
    return rows_.Item(static_cast<std::size_t>(Selected.get()));
}

std::string RowControl::mainValue() const {
    const auto row = static_cast<std::size_t>(Selected.peek());
    return row == 0 || row > rows_.Count() ? std::string() : rows_.Item(row).Text;
}

bool RowControl::selected(int row) {
    if (row < 1 || row > static_cast<int>(rows_.Count())) return false;
    Selected.adopt(row);
    Click.raise();
    return true;
}

bool ListView::selected(int row) {
    if (!RowControl::selected(row)) return false;
    MouseUp.raise();
    return true;
}

void RowControl::reset() {
    Control::reset();
    rows_.reset();
}

FileListBox::FileListBox(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : RowControl(form, name,
                 {.Enabled = design.Enabled, .Visible = design.Visible, .ToolTipText = design.ToolTipText},
                 index),
      Path(*this, "Path", {}),
      Pattern(*this, "Pattern", design.Pattern) {}

void FileListBox::Refresh(const Files& files) {
    std::string_view ending = Pattern.get();
    if (ending.starts_with('*')) ending.remove_prefix(1);
    Rows& rows = ListItems();
    rows.Clear();
    for (std::string& name : files.list(Path, ending)) rows.Add({.Text = std::move(name)});
}

}  // namespace velmora
