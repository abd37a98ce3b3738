#pragma once

#include <QDialog>
#include <QStringList>
#include <map>
#include <memory>

#include "platform/boxes.h"

namespace velmora::qt {

/// Which file dialogs are shown.
enum class FileDialogs { desktops, qts };

/// Shows boxes and file dialogs in windows that keep above the others and let the program go on. The loop
/// outlives it.
class QtBoxView : public BoxView {
public:
    explicit QtBoxView(Loop& loop, FileDialogs fileDialogs = FileDialogs::desktops)
        : loop_(loop), fileDialogs_(fileDialogs) {}
    ~QtBoxView() override;

    void boxOpened(const std::shared_ptr<Box>& box) override;
    void boxClosed(const std::shared_ptr<Box>& box) override;

    /// The window that shows the box; nullptr if none does.
    QWidget* window(const Box& box) const;

private:
    Loop& loop_;
    const FileDialogs fileDialogs_;
    std::map<const Box*, std::shared_ptr<QDialog>> windows_;
};

/// The filter of a file dialog (description and pattern in turn, each ended by a NUL) as Qt writes it;
/// several patterns are parted by semicolons.
QStringList nameFilters(std::string_view filter);

}  // namespace velmora::qt
