#pragma once

#include <string_view>

#include "platform/clock.h"

namespace velmora {

/// "Morning" before noon, "Afternoon" before 17:00, "Evening" after.
std::string_view PartOfDay(const Clock& clock);

}  // namespace velmora
