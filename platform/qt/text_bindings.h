#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "platform/controls.h"
#include "platform/qt/binding.h"

namespace velmora::qt {

/// What text fields of one line and of several share: the text goes in only if it differs, and the selection
/// follows both ways, counted in bytes on the control's side.
template <class WidgetType>
class TextBinding : public BindingOf<TextBox, WidgetType> {
public:
    using BindingOf<TextBox, WidgetType>::BindingOf;

protected:
    struct Selection {
        int begin;
        int length;
        bool operator==(const Selection&) const = default;
    };

    virtual QString text() const = 0;
    virtual void setText(const QString& text) = 0;
    virtual Selection selection() const = 0;
    virtual void select(Selection selection) = 0;

    /// The person has changed the text.
    void edited();
    /// The person has moved the cursor or selected something.
    void moved();

    void show() override;

private:
    void adopt(Selection selection, std::string_view bytes);

    bool adopting_ = false;
};

class LineEditBinding : public TextBinding<QLineEdit> {
public:
    LineEditBinding(TextBox& model, QLineEdit& widget, Loop& loop);

private:
    QString text() const override { return widget_.text(); }
    void setText(const QString& text) override;
    Selection selection() const override;
    void select(Selection selection) override;
};

class PlainTextEditBinding : public TextBinding<QPlainTextEdit> {
public:
    PlainTextEditBinding(TextBox& model, QPlainTextEdit& widget, Loop& loop);

private:
    QString text() const override { return widget_.toPlainText(); }
    /// A text that begins with the one on view is completed at its end: a transcript keeps its place, and
    /// goes on showing its last line if it did.
    void setText(const QString& text) override;
    Selection selection() const override;
    void select(Selection selection) override;
};

}  // namespace velmora::qt
