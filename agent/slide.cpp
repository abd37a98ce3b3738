#include "agent/slide.h"

#include <algorithm>
#include <cmath>

namespace agent {

Slide::Slide(Place from, Place to, Milliseconds start) : from_(from), to_(to), start_(start) {
    constexpr double pixelsPerSecond = 1200;
    constexpr Milliseconds shortest{150};
    constexpr Milliseconds longest{900};
    const double distance = std::hypot(double(to.x) - from.x, double(to.y) - from.y);
    lasts_ = std::clamp(Milliseconds(std::llround(distance / pixelsPerSecond * 1000)), shortest, longest);
}

Place Slide::at(Milliseconds now) const {
    const double part = std::clamp(
        static_cast<double>((now - start_).count()) / static_cast<double>(lasts_.count()), 0.0, 1.0);
    const double eased = part * part * (3 - 2 * part);
    const auto between = [eased](int from, int to) {
        return static_cast<int>(std::lround(from + (double(to) - from) * eased));
    };
    return {between(from_.x, to_.x), between(from_.y, to_.y)};
}

std::string_view moveAnimation(Place from, Place to) {
    const double right = double(to.x) - from.x;
    const double down = double(to.y) - from.y;
    // The figure faces the person: what is right on the desktop is left to the figure.
    if (std::abs(right) >= std::abs(down)) return right > 0 ? "MoveLeft" : "MoveRight";
    return down > 0 ? "MoveDown" : "MoveUp";
}

}  // namespace agent
