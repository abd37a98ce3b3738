#pragma once

#include <concepts>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/conversions.h"
#include "platform/control.h"

namespace velmora {

// The control kinds. What a change raises:
//
//   kind                      a program's change           a person's
//   text box, rich text       Change, if the text differs  Change, if the text differs
//   combo: text               Change, if the text differs  Change, if the text differs
//   combo: row                Click                        Click
//   check box, option button  Click, if the value differs  Click
//   button, picture                                        Click
//   list, tree                                             Click
//   calendar, picker          nothing                      Change
//   tabs, image combo         nothing                      Click
//
// Designs are flat and have an initialiser for every member, so that a form names only what it means.

struct LabelDesign {
    std::string Caption = {};
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
};

/// What has a caption and can be clicked or merely looked at.
class CaptionedControl : public Control {
public:
    using Design = LabelDesign;
    CaptionedControl(Form& form, std::string_view name, const Design& design, std::optional<int> index);

    Property<std::string> Caption;
    std::string mainValue() const override { return Caption.peek(); }
};

class Label : public CaptionedControl {
public:
    Label(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {})
        : CaptionedControl(form, name, design, index) {}
    std::string_view kind() const override { return "Label"; }
};

struct FrameDesign {
    std::string Caption = {};
    int Left = 0;
    int Top = 0;
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
};

/// A box around other controls. Where it stands is the program's to move: twips from the form's corner. Left
/// of it or above it (negative) the frame is out of view, whatever `Visible` says, as it is while covered.
class Frame : public CaptionedControl {
public:
    using Design = FrameDesign;
    Frame(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});

    Property<int> Left;
    Property<int> Top;
    /// Brings the frame before those that share its place; while it is visible, they are covered.
    void ZOrder();
    bool inView() const { return Left.peek() >= 0 && Top.peek() >= 0 && !covered(); }
    std::string_view kind() const override { return "Frame"; }

protected:
    void propertyChanged(const AnyProperty& property) override;

private:
    std::vector<Frame*> neighbours() const;
    bool covered() const;

    Property<bool> Front;
};

class Button : public CaptionedControl {
public:
    Button(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {})
        : CaptionedControl(form, name, design, index) {}
    template <std::derived_from<Form> F>
    Button(F& form, std::string_view name, const Design& design, void (F::*handler)())
        : Button(static_cast<Form&>(form), name, design) {
        Click.connect([&form, handler] { (form.*handler)(); });
    }

    Event Click;
    Event& mainEvent() { return Click; }
    std::string_view kind() const override { return "Button"; }

protected:
    bool clicked() override;
};

/// A picture that can be clicked; its caption is what a screen reader says.
class Picture : public Button {
public:
    using Button::Button;
    std::string_view kind() const override { return "Picture"; }
};

struct TextBoxDesign {
    std::string Text = {};
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
    bool Password = false;  ///< shown as "*"
    bool MultiLine = false;
    bool Locked = false;  ///< a person can read and copy, not type
};

class TextBox : public Control {
public:
    using Design = TextBoxDesign;
    TextBox(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});
    template <std::derived_from<Form> F>
    TextBox(F& form, std::string_view name, const Design& design, void (F::*handler)())
        : TextBox(static_cast<Form&>(form), name, design) {
        Change.connect([&form, handler] { (form.*handler)(); });
    }

    Event Change;
    Property<std::string> Text;
    Property<bool> Locked;
    /// The selection: its begin and length in characters.
    Property<int> SelStart;
    Property<int> SelLength;
    /// What the keystrokes Home and Shift+End do.
    void selectAll();

    Event& mainEvent() { return Change; }
    const bool Password;
    const bool MultiLine;
    std::string_view kind() const override { return "TextBox"; }
    std::string mainValue() const override { return Text.peek(); }

protected:
    bool typed(std::string_view text) override;
};

/// A pane of longer text, also a buffer to search in.
class RichTextBox : public TextBox {
public:
    RichTextBox(Form& form, std::string_view name, Design design = {}, std::optional<int> index = {});
    std::string_view kind() const override { return "RichTextBox"; }
};

struct CheckBoxDesign {
    std::string Caption = {};
    int Value = 0;  ///< 0 or 1
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
};

class CheckBox : public Control {
public:
    using Design = CheckBoxDesign;
    CheckBox(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});
    template <std::derived_from<Form> F>
    CheckBox(F& form, std::string_view name, const Design& design, void (F::*handler)())
        : CheckBox(static_cast<Form&>(form), name, design) {
        Click.connect([&form, handler] { (form.*handler)(); });
    }

    Event Click;
    Property<std::string> Caption;
    Property<int> Value;
    Event& mainEvent() { return Click; }
    std::string_view kind() const override { return "CheckBox"; }
    std::string mainValue() const override { return Value.text(); }

protected:
    bool clicked() override;
    bool typed(std::string_view text) override;
};

struct OptionButtonDesign {
    std::string Caption = {};
    bool Value = false;
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
    std::string Group = {};  ///< of the buttons of one group in a form, at most one is on
};

class OptionButton : public Control {
public:
    using Design = OptionButtonDesign;
    OptionButton(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});

    Event Click;
    Property<std::string> Caption;
    Property<bool> Value;
    const std::string Group;
    Event& mainEvent() { return Click; }
    std::string_view kind() const override { return "OptionButton"; }
    std::string mainValue() const override { return Value.text(); }

protected:
    bool clicked() override;
    void propertyChanged(const AnyProperty& property) override;
};

/// Runs its handler every `Interval` milliseconds while its form is loaded and it is enabled.
struct TimerDesign {
    int Interval = 0;  ///< milliseconds; 0 never fires
    bool Enabled = true;
};

class Timer : public Control {
public:
    using Design = TimerDesign;
    Timer(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});
    template <std::derived_from<Form> F>
    Timer(F& form, std::string_view name, const Design& design, void (F::*handler)())
        : Timer(static_cast<Form&>(form), name, design) {
        Tick.connect([&form, handler] { (form.*handler)(); });
    }

    Event Tick;
    Property<int> Interval;
    Event& mainEvent() { return Tick; }
    std::string_view kind() const override { return "Timer"; }
    std::string mainValue() const override { return Enabled.text(); }

protected:
    void propertyChanged(const AnyProperty& property) override;
    void formLoads() override { arm(); }
    void reset() override;

private:
    void arm();
    LoopTimer timer_;
};

struct StatusBarDesign {
    std::string Text = {};
    bool Visible = true;
};

class StatusBar : public Control {
public:
    using Design = StatusBarDesign;
    StatusBar(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});

    Property<std::string> Text;
    std::string_view kind() const override { return "StatusBar"; }
    std::string mainValue() const override { return Text.peek(); }
};

enum class PickerKind { date, time };

struct PickerDesign {
    PickerKind Shows = PickerKind::date;
    bool Enabled = true;
    bool Visible = true;
    std::string ToolTipText = {};
};

/// A field for a date or a time. A form that loads sets it; until then it stands at day zero, midnight.
class DTPicker : public Control {
public:
    using Design = PickerDesign;
    DTPicker(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {});

    Event Change;
    Property<DateTime> Value;
    const PickerKind Shows;
    Event& mainEvent() { return Change; }
    std::string_view kind() const override { return "DTPicker"; }
    std::string mainValue() const override;

protected:
    bool typed(std::string_view text) override;
};

/// A month on view, with one date chosen.
class MonthView : public DTPicker {
public:
    MonthView(Form& form, std::string_view name, const Design& design = {}, std::optional<int> index = {})
        : DTPicker(form, name, design, index) {}
    std::string_view kind() const override { return "MonthView"; }
};

std::string propertyText(const DateTime& value);

}  // namespace velmora
