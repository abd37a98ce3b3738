#include "platform/menu.h"

namespace velmora {

Menu::Menu(Form& form, std::string_view name, const Design& design)
    : Menu(form, name, design, std::nullopt) {}

Menu::Menu(Form& form, std::string_view name, const Design& design, std::optional<int> index)
    : Component(name, index),
      Caption(*this, "Caption", design.Caption),
      Enabled(*this, "Enabled", design.Enabled),
      Visible(*this, "Visible", design.Visible),
      Checked(*this, "Checked", design.Checked),
      Tag(*this, "Tag", {}),
      form_(form) {
    form.menus_.push_back(this);
}

Menu::Menu(Form& form, Menu& parent, std::string_view name, const Design& design, std::optional<int> index)
    : Menu(form, name, design, index) {
    parent_ = &parent;
    parent.entries_.push_back(this);
}

bool Menu::click() {
    if (!Enabled.peek() || !Visible.peek() || separator()) return false;
    Click.raise();
    return true;
}

}  // namespace velmora
