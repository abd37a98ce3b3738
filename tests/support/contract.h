#pragma once

#include <memory>
#include <ostream>

namespace velmora {

/// One of the implementations that a contract is tested with: what a `Ground` for it is made by.
template <class Ground, class... Arguments>
struct Kind {
    const char* name;
    std::unique_ptr<Ground> (*make)(Arguments... arguments);

    template <class SomeGround>
    static Kind of(const char* name) {
        return {name, [](Arguments... arguments) -> std::unique_ptr<Ground> {
                    return std::make_unique<SomeGround>(arguments...);
                }};
    }
    /// Names the kind in the names of the tests.
    friend void PrintTo(const Kind& kind, std::ostream* stream) { *stream << kind.name; }
};

}  // namespace velmora
