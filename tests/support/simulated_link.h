#pragma once

#include <numeric>

#include "platform/link.h"

namespace velmora {

/// A machine's link as a test sets it; at the start one connection, and it is up.
class SimulatedLink : public Link {
public:
    std::optional<std::vector<LinkHandle>> RasEnumConnections() const override {
        ++asked;
        if (!found) return std::nullopt;
        std::vector<LinkHandle> links(found->size());
        std::iota(links.begin(), links.end(), LinkHandle{1});
        return links;
    }
    std::optional<LinkStatus> RasGetConnectStatus(LinkHandle link) const override {
        if (!found || link < 1 || link > found->size()) return std::nullopt;
        return (*found)[link - 1];
    }
    long InternetAutodial() override { return dialResult; }

    std::optional<std::vector<LinkStatus>> found{{LinkStatus::connected}};
    long dialResult = 0;
    mutable int asked = 0;  ///< how often the test was made
};

}  // namespace velmora
