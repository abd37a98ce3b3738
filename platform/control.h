#pragma once

#include <concepts>
#include <deque>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/form.h"
#include "platform/rows.h"

namespace velmora {

/// A control of a form: what all kinds have, and what a person can do to them.
class Control : public Component {
public:
    Control(Form& form, std::string_view name, std::optional<int> index, bool enabled, bool visible,
            std::string toolTip = {});

    Property<bool> Enabled;
    Property<bool> Visible;
    Property<std::string> Tag;
    Property<std::string> ToolTipText;

    /// Moves the keyboard's focus here.
    void SetFocus();

    // What a person does. Each answers false, and changes nothing, where a person could not do that: the
    // control is disabled or hidden, of a kind that has no such thing, or the text or row does not fit it.
    bool click() { return usable() && clicked(); }
    /// Types the text in place of what is there.
    bool type(std::string_view text) { return usable() && typed(text); }
    /// Picks the row, node or tab; counted as `firstRow` says.
    bool select(int row) { return usable() && selected(row); }

    /// The rows as a list shows them; empty for a kind that has none.
    virtual std::vector<Row> listedRows() const { return {}; }
    virtual int firstRow() const { return 1; }

    Form& form() const { return form_; }
    void touch() const override { form_.touch(); }

protected:
    friend class Form;

    virtual bool clicked() { return false; }
    virtual bool typed(std::string_view) { return false; }
    virtual bool selected(int) { return false; }
    /// The form begins to load.
    virtual void formLoads() {}

private:
    bool usable() const { return Enabled.peek() && Visible.peek(); }

    Form& form_;
};

/// An array of controls of one kind and name, as `cmdFrames(2)`. `handler` takes the index.
template <class T>
class Array {
public:
    template <std::derived_from<Form> F>
    Array(F& form, std::string_view name, std::initializer_list<typename T::Design> designs,
          std::type_identity_t<void (F::*)(int)> handler = nullptr, int first = 0)
        : first_(first) {
        for (const auto& design : designs) {
            const int index = first_ + static_cast<int>(members_.size());
            T& member = members_.emplace_back(static_cast<Form&>(form), name, design, index);
            if constexpr (requires { member.mainEvent(); }) {
                if (handler) member.mainEvent().connect([&form, handler, index] { (form.*handler)(index); });
            }
        }
    }

    T& operator()(int index) {
        if (index < first_ || index - first_ >= static_cast<int>(members_.size()))
            throw Failure(errors::objectNotSet);
        return members_[static_cast<std::size_t>(index - first_)];
    }

private:
    int first_;
    std::deque<T> members_;
};

}  // namespace velmora
