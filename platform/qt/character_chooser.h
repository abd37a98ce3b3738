#pragma once

#include <QDialog>
#include <QPixmap>
#include <functional>
#include <string>
#include <vector>

#include "platform/qt/character_settings.h"

class QListWidget;

namespace velmora::qt {

/// The window that chooses the default character from pictures; the choice tells at the next start.
class CharacterChooser : public QDialog {
public:
    /// `names` are the packages found. `picture` draws one of them, or gives a null pixmap; it is asked while
    /// the window is open, for one after the other.
    CharacterChooser(CharacterSettings settings, const std::vector<std::string>& names,
                     std::function<QPixmap(const std::string&)> picture);

    void accept() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void drawNext(int row);

    CharacterSettings settings_;
    std::function<QPixmap(const std::string&)> picture_;
    QListWidget* names_;
};

}  // namespace velmora::qt
