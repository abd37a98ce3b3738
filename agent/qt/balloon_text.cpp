#include "agent/qt/balloon_text.h"

#include <QGlyphRun>
#include <QPointF>
#include <QTextOption>
#include <algorithm>
#include <cmath>

namespace agent {
namespace {

constexpr qsizetype longestPart = 4000;
constexpr int linesAtOnce = 4;

// The end of the part of `text` that begins at `start`: at a blank, if there is one.
qsizetype partEnd(const QString& text, qsizetype start) {
    if (text.size() - start <= longestPart) return text.size();
    for (qsizetype end = start + longestPart; end > start + longestPart / 2; --end) {
        if (text[end - 1].isSpace()) return end;
    }
    return start + longestPart;
}

}  // namespace

void BalloonText::set(const QString& text, const QFont& font, QSize most) {
    text_ = text;
    font_ = font;
    revealed_ = 0;
    width_ = most.width();
    layOut(0);
    double width = 0;
    for (int i = 0; i < layout_->lineCount(); ++i)
        width = std::max(width, layout_->lineAt(i).naturalTextWidth());
    const int lines = layout_->lineCount();
    const QSize whole(static_cast<int>(std::ceil(width)), lines == 0 ? 0 : bottomOf(lines - 1));
    finalSize_ = whole.boundedTo(most);
    size_ =
        lines <= linesAtOnce ? finalSize_ : finalSize_.boundedTo({most.width(), bottomOf(linesAtOnce - 1)});
    // What is written from right to left stands at the right edge: of the balloon, not of what it might need.
    if (text_.size() <= longestPart) width_ = finalSize_.width();
    layOut(0);
}

void BalloonText::layOut(qsizetype start) {
    start_ = start;
    scrolled_ = 0;
    layout_ = std::make_unique<QTextLayout>(text_.mid(start, partEnd(text_, start) - start), font_);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(text_.left(longestPart).isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    layout_->setTextOption(option);
    layout_->beginLayout();
    double y = 0;
    for (QTextLine line = layout_->createLine(); line.isValid(); line = layout_->createLine()) {
        line.setLineWidth(width_);
        line.setPosition({0, y});
        y += line.height();
    }
    layout_->endLayout();
}

void BalloonText::reveal(qsizetype end) {
    revealed_ = std::clamp<qsizetype>(end, 0, text_.size());
    qsizetype part = start_;
    for (qsizetype next = partEnd(text_, part); revealed_ > next; next = partEnd(text_, part)) part = next;
    if (part != start_) layOut(part);
    const QTextLine line =
        layout_->lineForTextPosition(static_cast<int>(std::max<qsizetype>(0, revealed_ - start_ - 1)));
    if (!line.isValid()) return;
    const int bottom = bottomOf(line.lineNumber());
    size_.setHeight(std::max(size_.height(), std::min(bottom, finalSize_.height())));
    scrolled_ = std::max(scrolled_, bottom - size_.height());
}

int BalloonText::bottomOf(int number) const {
    const QTextLine line = layout_->lineAt(number);
    return static_cast<int>(std::ceil(line.y() + line.height()));
}

void BalloonText::draw(QPainter& painter, const QColor& colour) const {
    painter.save();
    painter.setClipRect(QRect(QPoint(0, 0), size_));
    painter.setPen(colour);
    for (int i = 0; i < layout_->lineCount(); ++i) {
        const QTextLine line = layout_->lineAt(i);
        if (line.y() + line.height() <= scrolled_) continue;
        if (line.y() >= scrolled_ + size_.height()) break;
        const auto end = std::min<qsizetype>(line.textStart() + line.textLength(), revealed_ - start_);
        if (end <= line.textStart()) break;
        // Glyph by glyph: a transparent colour would not hide pictures that have colours of their own.
        for (const auto& run : line.glyphRuns(line.textStart(), static_cast<int>(end) - line.textStart()))
            painter.drawGlyphRun(QPointF(0, -scrolled_), run);
    }
    painter.restore();
}

}  // namespace agent
