#pragma once

#include <QDialog>
#include <functional>

namespace velmora::qt {

/// The window of a form. It never closes, hides or deletes itself: it says what the person wants.
///
/// Escape clicks the button whose dynamic property "cancel" is true; without one it does nothing. A window
/// whose dynamic property "splash" is true has no frame and takes no focus.
class FormWindow : public QDialog {
public:
    FormWindow();

    /// To be called when the window has its widgets and properties.
    void finish();

    std::function<void()> onClose;
    /// The person has minimised the window, or brought it back.
    std::function<void(bool minimised)> onMinimise;

    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
};

}  // namespace velmora::qt
