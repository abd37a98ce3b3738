#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

#include "base/conversions.h"

namespace velmora {

class Component;

/// What a control or form raises: at most one handler, connected where it is declared or in the form's
/// constructor.
class Event {
public:
    void connect(std::function<void()> handler) { handler_ = std::move(handler); }
    void raise() const {
        if (handler_) handler_();
    }

private:
    std::function<void()> handler_;
};

/// A property as the registry sees it: by name and as text.
class AnyProperty {
public:
    AnyProperty(Component& owner, std::string_view name);
    virtual ~AnyProperty() = default;
    AnyProperty(const AnyProperty&) = delete;
    AnyProperty& operator=(const AnyProperty&) = delete;

    std::string_view name() const { return name_; }

    /// The value in text; reading it this way never loads a form.
    virtual std::string text() const = 0;

    /// Back to the designed value, raising nothing.
    virtual void reset() = 0;

protected:
    void touch() const;
    void changed();

private:
    Component& owner_;
    std::string_view name_;
};

std::string propertyText(bool value);
std::string propertyText(int value);
inline const std::string& propertyText(const std::string& value) {
    return value;
}

/// A property that the program sets and reads like a variable. Using it loads the form it belongs to.
///
/// A program's change to a different value raises the event given at the declaration, if any.
template <class T>
class Property : public AnyProperty {
public:
    Property(Component& owner, std::string_view name, T designed, const Event* raises = nullptr)
        : AnyProperty(owner, name), designed_(std::move(designed)), value_(designed_), raises_(raises) {}

    const T& get() const {
        touch();
        return value_;
    }
    operator const T&() const { return get(); }  // NOLINT(google-explicit-constructor): reads like a variable

    Property& operator=(T value) {
        touch();
        if (value == value_) return *this;
        adopt(std::move(value));
        if (raises_) raises_->raise();
        return *this;
    }
    Property& operator=(const Property& other) { return *this = T(other.get()); }

    /// The value, without loading the form: for views.
    const T& peek() const { return value_; }

    /// Takes a value that a person has given it; views follow, and what it raises is the control's to say.
    void adopt(T value) {
        value_ = std::move(value);
        changed();
    }

    std::string text() const override { return std::string(propertyText(value_)); }
    void reset() override { value_ = designed_; }

private:
    const T designed_;
    T value_;
    const Event* raises_;
};

template <class T>
bool operator==(const Property<T>& left, const T& right) {
    return left.get() == right;
}

}  // namespace velmora
