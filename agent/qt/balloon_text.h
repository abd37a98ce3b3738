#pragma once

#include <QFont>
#include <QPainter>
#include <QSize>
#include <QString>
#include <QTextLayout>
#include <memory>

namespace agent {

/// The text of a balloon: wrapped, and revealed from its beginning. A few lines have their room at once, more
/// lines as they are revealed, until the balloon is as high as it may be; then they scroll. Text beyond any
/// balloon is laid out a part at a time.
class BalloonText {
public:
    /// Lays out `text` no wider than `most.width()`; in sight is no more than `most.height()`.
    void set(const QString& text, const QFont& font, QSize most);

    /// The room that it takes now.
    QSize size() const { return size_; }

    /// The room that it takes once everything is revealed.
    QSize finalSize() const { return finalSize_; }

    /// Reveals the text up to a position, and scrolls there.
    void reveal(qsizetype end);

    /// Draws what is revealed and in sight, at the painter's origin.
    void draw(QPainter& painter, const QColor& colour) const;

private:
    void layOut(qsizetype start);
    int bottomOf(int number) const;

    QString text_;
    QFont font_;
    int width_ = 0;  ///< at which lines are wrapped
    QSize size_;
    QSize finalSize_;
    std::unique_ptr<QTextLayout> layout_;
    qsizetype start_ = 0;  ///< of the part laid out
    qsizetype revealed_ = 0;
    int scrolled_ = 0;
};

}  // namespace agent
