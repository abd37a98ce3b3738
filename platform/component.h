#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/properties.h"

namespace velmora {

class Form;

/// What shows one control or form. A control has at most one.
class ComponentView {
public:
    virtual ~ComponentView() = default;
    /// The component's properties, rows or children have changed: show them as they are now.
    virtual void refresh() = 0;
};

/// What forms, controls and menu entries have in common: a name, and properties that can be read by name.
class Component {
public:
    Component(std::string_view name, std::optional<int> index) : name_(name), index_(index) {}
    virtual ~Component() = default;
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    /// The name alone, the same for all members of a control array.
    const std::string& name() const { return name_; }
    std::optional<int> index() const { return index_; }

    /// `cmdOK`, `cmdFrames(2)`.
    std::string displayName() const;

    /// The kind of the component, as lists name it: "TextBox".
    virtual std::string_view kind() const = 0;

    /// The value that a person would name first: a label's caption, a text box's text.
    virtual std::string mainValue() const = 0;

    /// The property of that name, letters of either case; nullptr if there is none.
    const AnyProperty* property(std::string_view name) const;

    /// The form is loaded if it is not.
    virtual void touch() const = 0;

    void show(ComponentView* view) { view_ = view; }
    void refreshView() const {
        if (view_) view_->refresh();
    }

protected:
    /// All properties back to their designed values; nothing is raised.
    virtual void reset();
    virtual void propertyChanged(const AnyProperty&) { refreshView(); }

private:
    friend class AnyProperty;
    friend class Form;

    std::string name_;
    std::optional<int> index_;
    std::vector<AnyProperty*> properties_;
    ComponentView* view_ = nullptr;
};

}  // namespace velmora
