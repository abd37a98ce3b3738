#pragma once

#include <QPainterPath>
#include <QWidget>

#include "agent/display.h"
#include "agent/qt/balloon_place.h"
#include "agent/qt/balloon_text.h"
#include "agent/qt/character_window.h"

namespace agent {

/// The balloon beside the figure: a window of its own that never takes the focus. It has its own colours,
/// which are readable whatever the desktop's theme, but for a theme of high contrast, and the application's
/// font. To a screen reader it is a notification that holds the line.
class Balloon : public QWidget {
public:
    Balloon();

    /// Makes it a part of the figure's window, which outlives it, where the desktop places windows; anywhere
    /// else this changes nothing.
    void belongTo(CharacterWindow& figure) { figure_ = &figure; }

    /// Shows a new line beside the figure, none of it revealed yet. `speaker` is for screen readers, to which
    /// the whole line is announced.
    void open(BalloonKind kind, const QString& text, const QString& speaker, QRect figure);

    /// Reveals the line up to a position of its text. A long line makes it grow.
    void reveal(qsizetype end);

    /// Closes it. No failure if it is closed.
    void closeNow();

    /// Stands beside the figure's new place.
    void follow(QRect figure);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QPainterPath outline() const;
    QPainterPath thoughtTail() const;
    QPainterPath speechTail() const;

    void attach();

    CharacterWindow* figure_ = nullptr;  ///< whose window this one is a part of
    BalloonKind kind_ = BalloonKind::speech;
    BalloonText text_;
    QWidget words_{this};  ///< stands for the drawn line, for screen readers
    QRect beside_;         ///< the figure's place
    BalloonPlace place_;
    bool composited_ = true;
};

}  // namespace agent
