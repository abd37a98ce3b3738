#pragma once

#include <QAbstractButton>
#include <QCheckBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QStatusBar>

#include "platform/controls.h"
#include "platform/qt/binding.h"

namespace velmora::qt {

/// The caption is plain text; an ampersand in it is an accelerator only where the label has a buddy.
class LabelBinding : public BindingOf<Label, QLabel> {
public:
    LabelBinding(Label& model, QLabel& widget, Loop& loop);

private:
    void show() override;
};

/// A button whose dynamic property "shows" names a frame stands pressed while that frame is in view.
class ButtonBinding : public BindingOf<Button, QAbstractButton> {
public:
    ButtonBinding(Button& model, QAbstractButton& widget, Loop& loop);

private:
    void show() override;
};

/// The caption is not drawn, it is the name that assistive tools read out.
class PictureBinding : public BindingOf<Picture, QAbstractButton> {
public:
    PictureBinding(Picture& model, QAbstractButton& widget, Loop& loop);

private:
    void show() override;
};

class CheckBoxBinding : public BindingOf<CheckBox, QCheckBox> {
public:
    CheckBoxBinding(CheckBox& model, QCheckBox& widget, Loop& loop);

private:
    void show() override;
};

class OptionButtonBinding : public BindingOf<OptionButton, QRadioButton> {
public:
    OptionButtonBinding(OptionButton& model, QRadioButton& widget, Loop& loop);

private:
    void show() override;
};

/// A frame that a layout manages stays where the layout puts it, any other goes where the program moves it.
/// One that the program moves out of view leaves its room to the frames that share its place, and none of
/// them changes the size of the window. With the dynamic property "keepsRoom" it does so however it is
/// hidden.
class FrameBinding : public BindingOf<Frame, QFrame> {
public:
    using BindingOf::BindingOf;

private:
    bool inView() const override { return model_.inView(); }
    void show() override;
};

class GroupBinding : public BindingOf<Frame, QGroupBox> {
public:
    using BindingOf::BindingOf;

private:
    bool inView() const override { return model_.inView(); }
    void show() override;
};

class StatusBarBinding : public BindingOf<StatusBar, QStatusBar> {
public:
    using BindingOf::BindingOf;

private:
    void show() override;
};

}  // namespace velmora::qt
