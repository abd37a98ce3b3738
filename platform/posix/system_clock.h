#pragma once

#include <optional>

#include "platform/clock.h"
#include "platform/loop.h"

namespace velmora {

/// The machine's local time, ahead by what the loop has skipped; or a time of the user's choice that goes on
/// from there.
class SystemClock : public Clock {
public:
    SystemClock(const Loop& loop, std::optional<DateTime> startsAt);
    DateTime now() const override;

private:
    const Loop& loop_;
    std::optional<DateTime> startsAt_;
    std::chrono::milliseconds started_;
};

}  // namespace velmora
