#pragma once

#include <QFont>
#include <QPainter>
#include <QSize>
#include <QString>
#include <QTextLayout>
#include <memory>

namespace agent {

/// The text of a balloon: wrapped, revealed from its beginning, and scrolled where it is longer than the
/// balloon is high. Text beyond any balloon is laid out a part at a time.
class BalloonText {
public:
    /// Lays out `text` no wider than `most.width()`; in sight is no more than `most.height()`.
    void set(const QString& text, const QFont& font, QSize most);

    /// What the text in sight needs.
    QSize size() const { return size_; }

    /// Reveals the text up to a position, and scrolls there.
    void reveal(qsizetype end);

    /// Draws what is revealed and in sight, at the painter's origin.
    void draw(QPainter& painter, const QColor& colour) const;

private:
    void layOut(qsizetype start);

    QString text_;
    QFont font_;
    int width_ = 0;  ///< at which lines are wrapped
    QSize size_;
    std::unique_ptr<QTextLayout> layout_;
    qsizetype start_ = 0;  ///< of the part laid out
    qsizetype revealed_ = 0;
    double scrolled_ = 0;
};

}  // namespace agent
