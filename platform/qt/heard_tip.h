#pragma once

#include <QFrame>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>
#include <functional>
#include <string>
#include <vector>

namespace velmora::qt {

/// A small window that tells what was heard, and offers what else may have been meant. Takes no focus, and
/// goes away by itself.
class HeardTipWindow : public QFrame {
public:
    struct Choice {
        std::string caption;
        std::function<void()> pick;  ///< called once at most, when the window has gone
    };

    HeardTipWindow();

    /// Shows the text with the choices below it, near the mouse, for some seconds.
    void tell(const std::string& text, std::vector<Choice> choices);
    /// Shows that the microphone is listened to, until told otherwise.
    void tellListening();

private:
    void fill(const QString& text, std::vector<Choice> choices);

    QVBoxLayout layout_{this};
    QLabel label_;
    std::vector<QWidget*> buttons_;  ///< the layout's
    QTimer hiding_;
};

}  // namespace velmora::qt
