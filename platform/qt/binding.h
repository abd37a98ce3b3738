#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

#include "platform/control.h"
#include "platform/loop.h"

namespace velmora::qt {

/// Ties one control to one widget, both ways: the widget shows the control, and what a person does to the
/// widget is told to the control, each time in a turn. Control and widget must outlive it.
class Binding : public ComponentView {
public:
    /// When a change of the control is shown: at once, or together with all others when the program returns
    /// to its loop (for kinds that can have long lists).
    enum class Pace { atOnce, gathered };

    Binding(Control& control, QWidget& widget, Loop& loop, Pace pace = Pace::atOnce);
    ~Binding() override;

    void refresh() override;

    /// Shows the control as it is, whatever the pace.
    void showNow();

    /// Nothing passes any more in either direction. A binding that may be on the stack is detached first, and
    /// destroyed when no turn is under way.
    void detach();

protected:
    /// Puts into the widget what is particular to its kind, and only what differs from what it shows.
    virtual void show() = 0;

    /// Whether the control is where it can be seen, apart from its `Visible`.
    virtual bool inView() const { return true; }

    /// Tells the control what the person has done; the widget then shows what came of it. A signal that the
    /// binding itself has caused is passed over.
    void enter(const Loop::Handler& entry);

    /// Whether signals of the widget come from a person.
    bool listening() const { return attached_ && !showing_; }

    /// Receiver of the widget's signals; goes with the binding.
    QObject* context() { return &context_; }

private:
    void showCommon();

    Control& control_;
    QWidget& widget_;
    Loop& loop_;
    const Pace pace_;
    const QString standingTip_;
    bool attached_ = true;
    bool showing_ = false;
    bool waiting_ = false;  // for the loop, to show what has been gathered
    QObject context_;
};

/// A binding between a kind of control and a kind of widget.
template <class ModelType, class WidgetType>
class BindingOf : public Binding {
public:
    using Model = ModelType;
    using Widget = WidgetType;

    BindingOf(Model& model, Widget& widget, Loop& loop, Pace pace = Pace::atOnce)
        : Binding(model, widget, loop, pace), model_(model), widget_(widget) {}

protected:
    Model& model_;
    Widget& widget_;
};

/// The text as a tool tip shows it: never as markup.
QString plainTip(const QString& text);

}  // namespace velmora::qt
