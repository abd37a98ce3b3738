#include "platform/console/addresses.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <vector>

#include "base/text.h"

namespace velmora {
namespace {

struct Name {
    std::string_view text;
    std::optional<int> index;
};

/// `cmdFrames(2)` as its name and index.
Name parseName(std::string_view text) {
    if (!text.ends_with(')')) return {text, {}};
    const auto open = text.find('(');
    if (open == std::string_view::npos) return {text, {}};
    int index = 0;
    const char* end = text.data() + text.size() - 1;
    const auto [stopped, error] = std::from_chars(text.data() + open + 1, end, index);
    if (error != std::errc() || stopped != end) return {text, {}};
    return {text.substr(0, open), index};
}

bool names(const Name& name, const Component& component) {
    return name.index == component.index() && equalsIgnoringCase(name.text, component.name());
}

const std::vector<Control*>& membersOf(const Form& form, const Control*) {
    return form.controls();
}
const std::vector<Menu*>& membersOf(const Form& form, const Menu*) {
    return form.menus();
}

template <class T>
T* memberOf(const Form& form, std::string_view text) {
    const Name name = parseName(text);
    const auto& members = membersOf(form, static_cast<T*>(nullptr));
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&name](const T* member) { return names(name, *member); });
    return found == members.end() ? nullptr : *found;
}

/// A form's own properties, beside those that it registers.
std::optional<std::string> formValue(const Form& form, std::string_view property) {
    if (equalsIgnoringCase(property, "Visible")) return propertyText(form.visible());
    if (equalsIgnoringCase(property, "WindowState"))
        return std::to_string(static_cast<int>(form.windowState()));
    if (const AnyProperty* registered = form.property(property)) return registered->text();
    return {};
}

}  // namespace

Form& Addresses::form(std::string_view name) const {
    Form* form = forms_.find(name);
    if (!form) throw LineError("no such form: " + std::string(name));
    return *form;
}

Form& Addresses::loadedForm(std::string_view name) const {
    Form& found = form(name);
    if (!found.alive()) throw LineError("the form is not loaded: " + std::string(name));
    return found;
}

template <class T>
T* Addresses::find(std::string_view address) const {
    if (const auto dot = address.find('.'); dot != std::string_view::npos) {
        const Form* form = forms_.find(address.substr(0, dot));
        return form ? memberOf<T>(*form, address.substr(dot + 1)) : nullptr;
    }
    std::vector<Form*> forms = forms_.all();
    std::stable_partition(forms.begin(), forms.end(), [](const Form* form) { return form->alive(); });
    std::stable_partition(forms.begin(), forms.end(),
                          [](const Form* form) { return form->name() == "FrmMain"; });
    for (const Form* form : forms) {
        if (T* found = memberOf<T>(*form, address)) return found;
    }
    return nullptr;
}

template <class T>
T& Addresses::findLoaded(std::string_view address) const {
    T* found = find<T>(address);
    if (!found) throw LineError("nothing has this name: " + std::string(address));
    if (!found->form().alive()) throw LineError("its form is not loaded: " + std::string(address));
    return *found;
}

Control& Addresses::control(std::string_view address) const {
    return findLoaded<Control>(address);
}

Menu& Addresses::menu(std::string_view address) const {
    return findLoaded<Menu>(address);
}

std::string Addresses::value(std::string_view address) const {
    const auto dot = address.rfind('.');
    if (find<Control>(address)) return control(address).mainValue();
    if (find<Menu>(address)) return menu(address).mainValue();
    if (dot == std::string_view::npos) throw LineError("nothing has this name: " + std::string(address));

    const std::string_view owner = address.substr(0, dot);
    const std::string_view name = address.substr(dot + 1);
    if (const Form* form = forms_.find(owner)) {
        if (const auto value = formValue(*form, name)) return *value;
        throw LineError("the form has no such control or property: " + std::string(address));
    }
    const Component& component = find<Control>(owner) ? static_cast<Component&>(control(owner)) : menu(owner);
    const AnyProperty* property = component.property(name);
    if (!property) throw LineError("no such property: " + std::string(address));
    return property->text();
}

}  // namespace velmora
