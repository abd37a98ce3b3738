#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QTabBar>
#include <QTreeView>
#include <set>
#include <string>

#include "platform/list_controls.h"
#include "platform/qt/binding.h"
#include "platform/qt/rows_model.h"

namespace velmora::qt {

/// What is typed stays what it is: nothing is completed, and no row is chosen or added for it.
class ComboBoxBinding : public BindingOf<ComboBox, QComboBox> {
public:
    ComboBoxBinding(ComboBox& model, QComboBox& widget, Loop& loop);

private:
    void show() override;
    void showRows();
    void picked(int row);
};

/// A list or a tree. The widget is a view without items of its own (`QListView`, `QTreeView`); its dynamic
/// property "columns" names the columns, "pictures" the files of the icons.
class ItemViewBinding : public BindingOf<RowControl, QAbstractItemView> {
public:
    ItemViewBinding(RowControl& model, QAbstractItemView& widget, Loop& loop);

protected:
    ItemViewBinding(RowControl& model, QAbstractItemView& widget, Loop& loop, RowsModel::Shape shape);
    void show() override;
    virtual void showRows() { rows_.setRows(model_.peekRows().all()); }

    RowsModel rows_;

private:
    void picked(int number);
    void currentChanged(int number);
    void clicked(int number);

    bool chosenByPress_ = false;
};

/// A node is open until the person closes it, also when other nodes come and go.
class TreeViewBinding : public ItemViewBinding {
public:
    using Model = TreeView;
    using Widget = QTreeView;
    TreeViewBinding(TreeView& model, QTreeView& widget, Loop& loop);

private:
    void showRows() override;

    QTreeView& tree_;
    std::set<std::string> closed_;  // keys
};

class ImageComboBinding : public BindingOf<ImageCombo, QComboBox> {
public:
    ImageComboBinding(ImageCombo& model, QComboBox& widget, Loop& loop);

private:
    void show() override;

    RowsModel rows_;
};

/// A click on the tab that is chosen already is a click too.
class TabStripBinding : public BindingOf<TabStrip, QTabBar> {
public:
    TabStripBinding(TabStrip& model, QTabBar& widget, Loop& loop);

private:
    void show() override;
};

}  // namespace velmora::qt
