#pragma once

#include "base/failure.h"

namespace velmora {

/// A reference that may be empty; using an empty one fails with 91.
template <class T>
class ObjectRef {
public:
    void set(T& object) { object_ = &object; }
    T& operator*() const {
        if (!object_) throw Failure(errors::objectNotSet);
        return *object_;
    }
    T* operator->() const { return &**this; }

private:
    T* object_ = nullptr;
};

}  // namespace velmora
