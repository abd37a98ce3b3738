#include "platform/control.h"

namespace velmora {

Control::Control(Form& form, std::string_view name, std::optional<int> index, bool enabled, bool visible,
                 std::string toolTip)
    : Component(name, index),
      Enabled(*this, "Enabled", enabled),
      Visible(*this, "Visible", visible),
      Tag(*this, "Tag", {}),
      ToolTipText(*this, "ToolTipText", std::move(toolTip)),
      form_(form) {
    form.controls_.push_back(this);
}

void Control::SetFocus() {
    touch();
    form_.forms().tell([this](ProgramView& view) { view.focusMoved(*this); });
}

}  // namespace velmora
