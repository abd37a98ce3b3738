#include "platform/qt/text_bindings.h"

#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextCursor>
#include <algorithm>
#include <limits>

#include "platform/qt/text.h"

namespace velmora::qt {
namespace {

// What is typed takes the line ends that the control's text has already: CRLF, unless it has LF alone.
std::string withLineEndsOf(const std::string& model, std::string typed) {
    const bool lineFeeds = model.find('\n') != std::string::npos;
    if (lineFeeds && model.find("\r\n") == std::string::npos) return typed;
    std::string result;
    for (const char character : typed) result.append(character == '\n' ? "\r\n" : std::string(1, character));
    return result;
}

}  // namespace

template <class WidgetType>
void TextBinding<WidgetType>::edited() {
    if (!this->listening()) return;
    const QString now = text();
    if (now == shown(this->model_.Text.peek())) return;
    const std::string typed = withLineEndsOf(this->model_.Text.peek(), typedBytes(now));
    // Before the text: the control's old selection must not move the cursor in the new text.
    adopt(selection(), typed);
    this->enter([&] { this->model_.type(typed); });
}

template <class WidgetType>
void TextBinding<WidgetType>::moved() {
    // While the text on view is ahead of the control's, its places mean nothing there; `edited` follows.
    if (this->listening() && text() == shown(this->model_.Text.peek()))
        adopt(selection(), this->model_.Text.peek());
}

template <class WidgetType>
void TextBinding<WidgetType>::adopt(Selection selection, std::string_view bytes) {
    const QScopedValueRollback adopting(adopting_, true);
    const auto begin = static_cast<int>(byteOffset(bytes, selection.begin));
    const auto end = static_cast<int>(byteOffset(bytes, selection.begin + selection.length));
    if (this->model_.SelStart.peek() != begin) this->model_.SelStart.adopt(begin);
    if (this->model_.SelLength.peek() != end - begin) this->model_.SelLength.adopt(end - begin);
}

template <class WidgetType>
void TextBinding<WidgetType>::show() {
    if (adopting_) return;
    this->widget_.setReadOnly(this->model_.Locked.peek());
    const std::string& bytes = this->model_.Text.peek();
    const QString wanted = shown(bytes);
    if (text() != wanted) setText(wanted);

    const int start = std::max(this->model_.SelStart.peek(), 0);
    const int length = std::max(this->model_.SelLength.peek(), 0);
    const int begin = shownOffset(bytes, static_cast<std::size_t>(start));
    const int end = shownOffset(bytes, static_cast<std::size_t>(start) + static_cast<std::size_t>(length));
    const Selection given{begin, end - begin};
    if (selection() != given) select(given);
}

template class TextBinding<QLineEdit>;
template class TextBinding<QPlainTextEdit>;

LineEditBinding::LineEditBinding(TextBox& model, QLineEdit& widget, Loop& loop)
    : TextBinding(model, widget, loop) {
    widget.setMaxLength(std::numeric_limits<int>::max());
    if (model.Password) {
        widget.setEchoMode(QLineEdit::Password);
        widget.setStyleSheet(QStringLiteral("lineedit-password-character: 42"));  // an asterisk in any style
    }
    QObject::connect(&widget, &QLineEdit::textEdited, context(), [this] { edited(); });
    QObject::connect(&widget, &QLineEdit::cursorPositionChanged, context(), [this] { moved(); });
    QObject::connect(&widget, &QLineEdit::selectionChanged, context(), [this] { moved(); });
}

void LineEditBinding::setText(const QString& text) {
    const int cursor = widget_.cursorPosition();
    widget_.setText(text);
    widget_.setCursorPosition(cursor);
}

LineEditBinding::Selection LineEditBinding::selection() const {
    if (!widget_.hasSelectedText()) return {widget_.cursorPosition(), 0};
    return {widget_.selectionStart(), widget_.selectionLength()};
}

void LineEditBinding::select(Selection selection) {
    widget_.deselect();
    widget_.setCursorPosition(selection.begin);
    if (selection.length > 0) widget_.setSelection(selection.begin, selection.length);
}

PlainTextEditBinding::PlainTextEditBinding(TextBox& model, QPlainTextEdit& widget, Loop& loop)
    : TextBinding(model, widget, loop) {
    widget.setTabChangesFocus(true);
    QObject::connect(&widget, &QPlainTextEdit::textChanged, context(), [this] { edited(); });
    QObject::connect(&widget, &QPlainTextEdit::cursorPositionChanged, context(), [this] { moved(); });
    QObject::connect(&widget, &QPlainTextEdit::selectionChanged, context(), [this] { moved(); });
}

void PlainTextEditBinding::setText(const QString& text) {
    QScrollBar& bar = *widget_.verticalScrollBar();
    const int place = bar.value();
    const QString old = widget_.toPlainText();
    const bool grows = !old.isEmpty() && text.startsWith(old);
    const bool following = grows && place == bar.maximum();  // any other text is read from its beginning
    const Selection kept = selection();
    if (grows) {
        QTextCursor end(widget_.document());
        end.movePosition(QTextCursor::End);
        end.insertText(text.mid(old.size()));
    } else {
        widget_.setPlainText(text);
    }
    if (selection() != kept) select(kept);
    bar.setValue(following ? bar.maximum() : place);
}

PlainTextEditBinding::Selection PlainTextEditBinding::selection() const {
    const QTextCursor cursor = widget_.textCursor();
    return {cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()};
}

void PlainTextEditBinding::select(Selection selection) {
    QTextCursor cursor = widget_.textCursor();
    const int last = widget_.document()->characterCount() - 1;
    cursor.setPosition(std::min(selection.begin, last));
    cursor.setPosition(std::min(selection.begin + selection.length, last), QTextCursor::KeepAnchor);
    widget_.setTextCursor(cursor);
}

}  // namespace velmora::qt
