#pragma once

#include "platform/link.h"

namespace velmora {

/// A machine's link as a test sets it; at the start one connection, and it is up.
class SimulatedLink : public Link {
public:
    using Connections = std::optional<std::vector<LinkState>>;

    Connections connections() const override {
        ++asked;
        return found;
    }
    long InternetAutodial() override {
        ++dialled;
        if (afterDial) found = *afterDial;
        return dialResult;
    }

    Connections found{{LinkState::connected}};
    std::optional<Connections> afterDial;  ///< what is found once it was dialled; nothing: no change
    long dialResult = 0;
    int dialled = 0;        ///< how often
    mutable int asked = 0;  ///< how often the test was made
};

}  // namespace velmora
