#include "character/part_of_day.h"

#include <chrono>

namespace velmora {

std::string_view PartOfDay(const Clock& clock) {
    const auto hour = std::chrono::duration_cast<std::chrono::hours>(clock.now().time).count();
    return 12 > hour ? "Morning" : 17 > hour ? "Afternoon" : "Evening";
}

}  // namespace velmora
