#pragma once

#include <functional>
#include <utility>

namespace velmora {

/// A place in a fixed order of work that another subsystem fills. One that nobody has filled does nothing.
class Step {
public:
    Step() = default;
    Step& operator=(std::function<void()> work) {
        work_ = std::move(work);
        return *this;
    }
    void operator()() const {
        if (work_) work_();
    }

private:
    std::function<void()> work_;
};

}  // namespace velmora
