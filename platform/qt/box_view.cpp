#include "platform/qt/box_view.h"

#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <array>

#include "platform/qt/later.h"
#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

QMessageBox::Icon iconOf(BoxIcon icon) {
    static constexpr std::array icons{QMessageBox::NoIcon, QMessageBox::Warning, QMessageBox::Information,
                                      QMessageBox::Question};
    return icons.at(static_cast<std::size_t>(icon));
}

// Closing a box that asks means no.
BoxAnswer answerOf(int result, BoxButtons buttons) {
    if (buttons == BoxButtons::ok) return BoxAnswer::ok;
    return result == QMessageBox::Yes ? BoxAnswer::yes : BoxAnswer::no;
}

QDialog* messageBox(const std::shared_ptr<Box>& box, Loop& loop) {
    auto* window = new QMessageBox;
    window->setTextFormat(Qt::PlainText);
    window->setText(shown(box->text));
    window->setIcon(iconOf(box->icon));
    if (box->buttons == BoxButtons::yesNo) {
        window->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        window->setEscapeButton(QMessageBox::No);
    } else {
        window->setStandardButtons(QMessageBox::Ok);
    }
    QObject::connect(window, &QDialog::finished, window, [box, &loop](int result) {
        loop.turn([&] { box->reply(answerOf(result, box->buttons)); });
    });
    return window;
}

QDialog* fileDialog(const std::shared_ptr<Box>& box, Loop& loop, FileDialogs which) {
    auto* window = new QFileDialog;
    window->setOption(QFileDialog::DontUseNativeDialog, which == FileDialogs::qts);
    const bool saves = box->kind == Box::Kind::saveFile;
    window->setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    window->setFileMode(saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    window->setNameFilters(nameFilters(box->filter));
    window->setDefaultSuffix(shown(box->extension));
    QObject::connect(window, &QDialog::finished, window, [box, window, &loop](int result) {
        loop.turn([&] {
            const QStringList files = window->selectedFiles();
            std::optional<std::string> path;
            if (result == QDialog::Accepted && !files.isEmpty())
                path = QFile::encodeName(files.first()).toStdString();
            box->reply(std::move(path));
        });
    });
    return window;
}

}  // namespace

QStringList nameFilters(std::string_view filter) {
    QStringList filters;
    while (!filter.empty()) {
        const auto take = [&filter] {
            const auto end = filter.find('\0');
            QString text = shown(filter.substr(0, end));
            filter.remove_prefix(end == std::string_view::npos ? filter.size() : end + 1);
            return text;
        };
        const QString description = take();
        const QString patterns = take().replace(u';', u' ');
        // "*.*" means every file, where Qt would ask for a dot; and programs have no ending of their own
        // here.
        const bool every = patterns == QStringLiteral("*.*") || patterns == QStringLiteral("*.exe");
        if (!patterns.isEmpty())
            filters.append(QStringLiteral("%1 (%2)").arg(description.section(u'(', 0, 0).trimmed(),
                                                         every ? QStringLiteral("*") : patterns));
    }
    return filters;
}

QtBoxView::~QtBoxView() {
    for (const auto& [box, window] : windows_)
        QObject::disconnect(window.get(), &QDialog::finished, nullptr, nullptr);
}

QWidget* QtBoxView::window(const Box& box) const {
    const auto found = windows_.find(&box);
    return found == windows_.end() ? nullptr : found->second.get();
}

void QtBoxView::boxOpened(const std::shared_ptr<Box>& box) {
    const bool asksForFile = box->kind != Box::Kind::message;
    const std::shared_ptr<QDialog> window(
        asksForFile ? fileDialog(box, loop_, fileDialogs_) : messageBox(box, loop_), DeleteLater{});
    window->setWindowTitle(shown(box->title));
    window->setWindowFlag(Qt::WindowStaysOnTopHint);
    window->setModal(false);
    windows_[box.get()] = window;
    window->show();
    window->raise();
    window->activateWindow();
}

void QtBoxView::boxClosed(const std::shared_ptr<Box>& box) {
    const auto found = windows_.find(box.get());
    if (found == windows_.end()) return;
    QObject::disconnect(found->second.get(), &QDialog::finished, nullptr, nullptr);
    found->second->hide();
    loop_.retire(found->second);
    windows_.erase(found);
}

}  // namespace velmora::qt
