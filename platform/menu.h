#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <vector>

#include "platform/form.h"

namespace velmora {

struct MenuDesign {
    std::string Caption = {};  ///< "-" is a separator
    bool Enabled = true;
    bool Visible = true;
    bool Checked = false;
};

/// A menu, or an entry of one: a tree of its own beside the form's controls.
class Menu : public Component {
public:
    using Design = MenuDesign;

    /// A menu of its own, to be popped up.
    Menu(Form& form, std::string_view name, const Design& design);
    Menu(Form& form, std::string_view name, const Design& design, std::optional<int> index);

    /// An entry at the end of `parent`.
    Menu(Form& form, Menu& parent, std::string_view name, const Design& design,
         std::optional<int> index = {});
    template <std::derived_from<Form> F>
    Menu(F& form, Menu& parent, std::string_view name, const Design& design, void (F::*handler)())
        : Menu(static_cast<Form&>(form), parent, name, design) {
        Click.connect([&form, handler] { (form.*handler)(); });
    }

    Event Click;
    Property<std::string> Caption;
    Property<bool> Enabled;
    Property<bool> Visible;
    Property<bool> Checked;
    Property<std::string> Tag;

    /// A person picks the entry. False if that can't be: it is disabled, hidden, or a separator.
    bool click();

    bool separator() const { return Caption.peek() == "-"; }
    Form& form() const { return form_; }
    /// nullptr for a menu of its own.
    Menu* parent() const { return parent_; }
    const std::vector<Menu*>& entries() const { return entries_; }

    std::string_view kind() const override { return "Menu"; }
    std::string mainValue() const override { return Caption.peek(); }
    void touch() const override { form_.touch(); }

private:
    friend class Form;
    Form& form_;
    Menu* parent_ = nullptr;
    std::vector<Menu*> entries_;
};

}  // namespace velmora
