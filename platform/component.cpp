#include "platform/component.h"

#include <algorithm>

#include "base/text.h"

namespace velmora {

AnyProperty::AnyProperty(Component& owner, std::string_view name) : owner_(owner), name_(name) {
    owner.properties_.push_back(this);
}

void AnyProperty::touch() const {
    owner_.touch();
}

void AnyProperty::changed() {
    owner_.propertyChanged(*this);
}

std::string propertyText(bool value) {
    return value ? "True" : "False";
}

std::string propertyText(int value) {
    return std::to_string(value);
}

std::string Component::displayName() const {
    return index_ ? name_ + "(" + std::to_string(*index_) + ")" : name_;
}

const AnyProperty* Component::property(std::string_view name) const {
    const auto found = std::find_if(
        properties_.begin(), properties_.end(),
        [name](const AnyProperty* property) { return equalsIgnoringCase(property->name(), name); });
    return found == properties_.end() ? nullptr : *found;
}

void Component::reset() {
    for (AnyProperty* property : properties_) property->reset();
}

}  // namespace velmora
