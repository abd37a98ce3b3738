#pragma once

#include "agent/display.h"

namespace agent {

/// A figure's way from one place to another: it sets off and stops gently.
class Slide {
public:
    /// Sets off at `start`; a far way takes longer, within limits that no patience notices.
    Slide(Place from, Place to, Milliseconds start);

    Place at(Milliseconds now) const;
    bool over(Milliseconds now) const { return now >= start_ + lasts_; }

private:
    Place from_;
    Place to_;
    Milliseconds start_;
    Milliseconds lasts_;
};

/// The animation that goes with this way, as the figure itself sees left and right.
std::string_view moveAnimation(Place from, Place to);

}  // namespace agent
