#include "platform/controls.h"

#include <algorithm>

#include "base/failure.h"

namespace velmora {

CaptionedControl::CaptionedControl(Form& form, std::string_view name, const Design& design,
                                   std::optional<int> index)
    : Control(form, name, index, design.Enabled, design.Visible, design.ToolTipText),
      Caption(*this, "Caption", design.Caption) {}

Frame::Frame(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : CaptionedControl(form, name,
                       {.Caption = design.Caption,
                        .Enabled = design.Enabled,
                        .Visible = design.Visible,
                        .ToolTipText = design.ToolTipText},
                       index),
      Left(*this, "Left", design.Left),
      Top(*this, "Top", design.Top),
      Front(*this, "Front", false) {}

std::vector<Frame*> Frame::neighbours() const {
    std::vector<Frame*> frames;
    for (Control* control : form().controls()) {
        auto* frame = dynamic_cast<Frame*>(control);
        if (frame && frame != this && frame->Left.peek() == Left.peek() && frame->Top.peek() == Top.peek())
            frames.push_back(frame);
    }
    return frames;
}

bool Frame::covered() const {
    const auto frames = neighbours();
    return std::any_of(frames.begin(), frames.end(),
                       [](const Frame* frame) { return frame->Front.peek() && frame->Visible.peek(); });
}

void Frame::ZOrder() {
    touch();
    for (Frame* frame : neighbours()) frame->Front.adopt(false);
    Front.adopt(true);
}

void Frame::propertyChanged(const AnyProperty& property) {
    refreshView();
    if (&property != &Front && &property != &Visible) return;
    for (const Frame* frame : neighbours()) frame->refreshView();
}

bool Button::clicked() {
    Click.raise();
    return true;
}

TextBox::TextBox(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Control(form, name, index, design.Enabled, design.Visible, design.ToolTipText),
      Text(*this, "Text", design.Text, &Change),
      Locked(*this, "Locked", design.Locked),
      SelStart(*this, "SelStart", 0),
      SelLength(*this, "SelLength", 0),
      Password(design.Password),
      MultiLine(design.MultiLine) {}

void TextBox::selectAll() {
    SelStart = 0;
    SelLength = static_cast<int>(Text.get().size());
    refreshView();
}

bool TextBox::typed(std::string_view text) {
    if (Locked.peek()) return false;
    if (text == Text.peek()) return true;
    Text.adopt(std::string(text));
    Change.raise();
    return true;
}

namespace {
TextBoxDesign multiLine(TextBoxDesign design) {
    design.MultiLine = true;
    return design;
}
}  // namespace

RichTextBox::RichTextBox(Form& form, std::string_view name, Design design, std::optional<int> index)
    : TextBox(form, name, multiLine(std::move(design)), index) {}

CheckBox::CheckBox(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Control(form, name, index, design.Enabled, design.Visible, design.ToolTipText),
      Caption(*this, "Caption", design.Caption),
      Value(*this, "Value", design.Value, &Click) {}

bool CheckBox::clicked() {
    Value.adopt(Value.peek() == 0 ? 1 : 0);
    Click.raise();
    return true;
}

bool CheckBox::typed(std::string_view text) {
    if (text != "0" && text != "1") return false;
    const bool differs = text != Value.text();
    return !differs || clicked();
}

OptionButton::OptionButton(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Control(form, name, index, design.Enabled, design.Visible, design.ToolTipText),
      Caption(*this, "Caption", design.Caption),
      Value(*this, "Value", design.Value, &Click),
      Group(design.Group) {}

bool OptionButton::clicked() {
    Value.adopt(true);
    Click.raise();
    return true;
}

void OptionButton::propertyChanged(const AnyProperty& property) {
    if (&property == &Value && Value.peek()) {
        for (Control* control : form().controls()) {
            auto* other = dynamic_cast<OptionButton*>(control);
            if (other && other != this && other->Group == Group && other->Value.peek())
                other->Value.adopt(false);
        }
    }
    refreshView();
}

Timer::Timer(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Control(form, name, index, design.Enabled, true),
      Interval(*this, "Interval", design.Interval),
      timer_(form.forms().loop(), [this] { Tick.raise(); }) {}

void Timer::arm() {
    if (Enabled.peek() && Interval.peek() > 0) {
        timer_.start(std::chrono::milliseconds(Interval.peek()));
    } else {
        timer_.stop();
    }
}

void Timer::propertyChanged(const AnyProperty& property) {
    if (&property == &Enabled || &property == &Interval) arm();
}

void Timer::reset() {
    Control::reset();
    timer_.stop();
}

StatusBar::StatusBar(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Control(form, name, index, true, design.Visible), Text(*this, "Text", design.Text) {}

DTPicker::DTPicker(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Control(form, name, index, design.Enabled, design.Visible, design.ToolTipText),
      Value(*this, "Value", {}),
      Shows(design.Shows) {}

std::string DTPicker::mainValue() const {
    return Shows == PickerKind::time ? timeText(Value.peek().time) : dateText(Value.peek().date);
}

bool DTPicker::typed(std::string_view text) {
    // Only a time holds a colon, and a text with both is nothing that fits into either kind of field.
    const bool holdsTime = text.find(':') != std::string_view::npos;
    DateTime value = Value.peek();
    try {
        const DateTime given = toDateTime(text);
        if (Shows == PickerKind::date) {
            if (holdsTime) return false;
            value.date = given.date;
        } else {
            if (!holdsTime || given.date != DateTime::dayZero) return false;
            value.time = given.time;
        }
    } catch (const Failure&) {
        return false;
    }
    if (value == Value.peek() && !countsTheSame()) return true;
    Value.adopt(value);
    Change.raise();
    return true;
}

void MonthView::setMarked(std::vector<std::chrono::year_month_day> days) {
    touch();
    marked_ = std::move(days);
    refreshView();
}

void MonthView::reset() {
    DTPicker::reset();
    marked_.clear();
}

std::string propertyText(const DateTime& value) {
    return dateText(value.date) + " " + timeText(value.time);
}

}  // namespace velmora
