#include "platform/qt/row_bindings.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <algorithm>

#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

QStringList listProperty(const QWidget& widget, const char* name) {
    return widget.property(name).toStringList();
}

}  // namespace

ComboBoxBinding::ComboBoxBinding(ComboBox& model, QComboBox& widget, Loop& loop)
    : BindingOf(model, widget, loop, Pace::gathered) {
    widget.setEditable(true);
    widget.setInsertPolicy(QComboBox::NoInsert);
    widget.setCompleter(nullptr);
    QLineEdit* edit = widget.lineEdit();
    // The combo box itself would choose the row that a typed text happens to equal.
    QObject::disconnect(edit, &QLineEdit::editingFinished, &widget, nullptr);
    QObject::disconnect(edit, &QLineEdit::returnPressed, &widget, nullptr);
    QObject::connect(edit, &QLineEdit::textEdited, context(),
                     [this](const QString& text) { enter([&] { model_.type(typedBytes(text)); }); });
    QObject::connect(&widget, &QComboBox::activated, context(), [this](int row) { picked(row); });
}

// The row that was on view, even if the program has changed the list since it was last shown.
void ComboBoxBinding::picked(int row) {
    const auto rows = model_.listedRows();
    const auto at = static_cast<std::size_t>(row);
    const bool same = at < rows.size() && shown(rows[at].Text) == widget_.itemText(row);
    enter([&] { same&& model_.select(row); });
}

void ComboBoxBinding::show() {
    showRows();
    const int chosen = model_.form().alive() ? model_.ListIndex() : -1;
    const QString text = shown(model_.Text.peek());
    const int cursor = widget_.lineEdit()->cursorPosition();
    const bool differs = widget_.currentText() != text;
    if (widget_.currentIndex() != chosen) widget_.setCurrentIndex(chosen);
    if (widget_.currentText() != text) widget_.setEditText(text);
    if (!differs) widget_.lineEdit()->setCursorPosition(cursor);
}

void ComboBoxBinding::showRows() {
    QStringList rows;
    for (const Row& row : model_.listedRows()) rows.append(shown(row.Text));
    bool same = rows.size() == widget_.count();
    for (int row = 0; same && row < rows.size(); ++row) same = widget_.itemText(row) == rows[row];
    if (same) return;
    const QString text = widget_.currentText();
    widget_.clear();
    widget_.addItems(rows);
    widget_.setEditText(text);
}

ItemViewBinding::ItemViewBinding(RowControl& model, QAbstractItemView& widget, Loop& loop)
    : ItemViewBinding(model, widget, loop, RowsModel::Shape::list) {}

ItemViewBinding::ItemViewBinding(RowControl& model, QAbstractItemView& widget, Loop& loop,
                                 RowsModel::Shape shape)
    : BindingOf(model, widget, loop, Pace::gathered),
      rows_(shape, listProperty(widget, "columns"), listProperty(widget, "pictures")) {
    widget.setModel(&rows_);
    widget.setSelectionMode(QAbstractItemView::SingleSelection);
    widget.setEditTriggers(QAbstractItemView::NoEditTriggers);
    if (auto* tree = qobject_cast<QTreeView*>(&widget)) {
        tree->setUniformRowHeights(true);
        tree->setRootIsDecorated(shape == RowsModel::Shape::tree);
        tree->setHeaderHidden(listProperty(widget, "columns").isEmpty());
    }
    QObject::connect(widget.selectionModel(), &QItemSelectionModel::currentChanged, context(),
                     [this](const QModelIndex& current) { currentChanged(RowsModel::number(current)); });
    QObject::connect(&widget, &QAbstractItemView::clicked, context(),
                     [this](const QModelIndex& index) { clicked(RowsModel::number(index)); });
}

// A press on a row makes it the current one, and its release is the click: together they are one click,
// whereas one on the current row, which changes nothing, is a click too.
void ItemViewBinding::currentChanged(int number) {
    if (number == 0 || !listening()) return;
    chosenByPress_ = QGuiApplication::mouseButtons() != Qt::NoButton;
    picked(number);
}

void ItemViewBinding::clicked(int number) {
    if (!std::exchange(chosenByPress_, false)) picked(number);
}

void ItemViewBinding::picked(int number) {
    enter([&] { rows_.agrees(model_.peekRows().all(), number) && pick(number); });
}

void ItemViewBinding::show() {
    const int place = widget_.verticalScrollBar()->value();
    showRows();
    const QModelIndex chosen = rows_.indexOf(model_.Selected.peek());
    if (widget_.currentIndex().siblingAtColumn(0) != chosen) {
        widget_.setCurrentIndex(chosen);
    } else {
        widget_.verticalScrollBar()->setValue(place);
    }
    if (!chosen.isValid()) widget_.clearSelection();
}

ListViewBinding::ListViewBinding(ListView& model, QAbstractItemView& widget, Loop& loop)
    : ItemViewBinding(model, widget, loop), list_(model) {
    QObject::connect(&widget, &QAbstractItemView::clicked, context(),
                     [this](const QModelIndex& index) { released(RowsModel::number(index)); });
    widget.setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(&widget, &QWidget::customContextMenuRequested, context(), [this](const QPoint& place) {
        // By keyboard it comes from no place of the mouse, but is meant for the row that is chosen.
        const bool byMouse = QGuiApplication::mouseButtons() != Qt::NoButton;
        released(RowsModel::number(byMouse ? widget_.indexAt(place) : widget_.currentIndex()));
    });
}

void ListViewBinding::released(int number) {
    enter([&] {
        const bool chosen = number != 0 && number == list_.Selected.peek();
        if (chosen && rows_.agrees(list_.peekRows().all(), number)) list_.MouseUp.raise();
    });
}

TreeViewBinding::TreeViewBinding(TreeView& model, QTreeView& widget, Loop& loop)
    : ItemViewBinding(model, widget, loop, RowsModel::Shape::tree), tree_(widget) {
    const auto keyOf = [this](const QModelIndex& index) -> const std::string& {
        return rows_.rows()[static_cast<std::size_t>(RowsModel::number(index)) - 1].Key;
    };
    QObject::connect(&widget, &QTreeView::collapsed, context(),
                     [this, keyOf](const QModelIndex& index) { closed_.insert(keyOf(index)); });
    QObject::connect(&widget, &QTreeView::expanded, context(),
                     [this, keyOf](const QModelIndex& index) { closed_.erase(keyOf(index)); });
}

void TreeViewBinding::showRows() {
    const auto closed = closed_;
    if (!rows_.setRows(model_.peekRows().all())) return;
    tree_.expandAll();
    for (int number = 1; number <= static_cast<int>(rows_.rows().size()); ++number) {
        if (closed.contains(rows_.rows()[static_cast<std::size_t>(number) - 1].Key))
            tree_.collapse(rows_.indexOf(number));
    }
    closed_ = closed;
}

ImageComboBinding::ImageComboBinding(ImageCombo& model, QComboBox& widget, Loop& loop)
    : BindingOf(model, widget, loop, Pace::gathered),
      rows_(RowsModel::Shape::list, {}, listProperty(widget, "pictures")) {
    widget.setEditable(false);
    widget.setModel(&rows_);
    QObject::connect(&widget, &QComboBox::activated, context(), [this](int row) {
        enter([&] { rows_.agrees(model_.peekRows().all(), row + 1) && model_.select(row); });
    });
}

void ImageComboBinding::show() {
    rows_.setRows(model_.peekRows().all());
    widget_.setCurrentIndex(model_.Selected.peek() - 1);
}

TabStripBinding::TabStripBinding(TabStrip& model, QTabBar& widget, Loop& loop)
    : BindingOf(model, widget, loop, Pace::gathered) {
    QObject::connect(&widget, &QTabBar::currentChanged, context(),
                     [this](int tab) { enter([this, tab] { model_.select(tab + 1); }); });
    QObject::connect(&widget, &QTabBar::tabBarClicked, context(), [this](int tab) {
        // Any other tab tells of itself when it becomes the current one.
        if (tab == widget_.currentIndex()) enter([this, tab] { model_.select(tab + 1); });
    });
}

void TabStripBinding::show() {
    const auto& rows = model_.peekRows().all();
    const int count = static_cast<int>(rows.size());
    while (widget_.count() > count) widget_.removeTab(widget_.count() - 1);
    for (int tab = 0; tab < count; ++tab) {
        const QString text = shown(rows[static_cast<std::size_t>(tab)].Text);
        if (tab == widget_.count()) widget_.addTab(text);
        if (widget_.tabText(tab) != text) widget_.setTabText(tab, text);
    }
    widget_.setCurrentIndex(model_.Selected.peek() - 1);
}

}  // namespace velmora::qt
