#pragma once

#include <QFrame>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>
#include <functional>
#include <string>
#include <vector>

namespace velmora::qt {

/// A small window that tells what was heard, and offers what else may have been meant. Stands beside the
/// figure that hears. Takes no focus by itself, and goes away by itself, though not from under the mouse. To
/// a screen reader it is a notification that holds the text, read out each time there is a new one.
class HeardTipWindow : public QFrame {
public:
    struct Choice {
        std::string caption;
        std::function<void()> pick;  ///< called once at most, when the window has gone
    };

    /// `figure` gives the part of the desktop beside which to stand; an empty one: the lower right corner.
    explicit HeardTipWindow(std::function<QRect()> figure);

    /// Shows the text with the choices below it for some seconds. `hint`, in small letters, introduces them
    /// and is shown only with them.
    void tell(const std::string& text, std::vector<Choice> choices, const std::string& hint);
    /// Shows that the microphone is listened to, until told otherwise.
    void tellListening(const std::string& hint);

    /// The figure has moved, or come or gone.
    void follow();

    /// Brings the keyboard to the choices, if any are shown: arrows, Enter and Escape do what they should.
    void takeKeyboard();

    /// A click beside the choices, which also closes the window.
    std::function<void()> onDismissed;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void fill(const QString& text, std::vector<Choice> choices, const QString& hint);
    void addChoice(Choice choice);
    void acceptKeyboard(bool accept);
    void hideUnlessUsed();
    void announce();

    std::function<QRect()> figure_;
    QVBoxLayout layout_{this};
    QLabel label_;
    QLabel hint_;
    std::vector<QWidget*> buttons_;  ///< the layout's
    QTimer hiding_;
};

}  // namespace velmora::qt
