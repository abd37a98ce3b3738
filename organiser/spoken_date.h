#pragma once

#include <chrono>
#include <string>

namespace velmora {

/// The date as an English phrase: "Tuesday the 14th of November 2000". What is no date leaves its parts
/// empty.
std::string spokenDate(std::chrono::year_month_day date);

}  // namespace velmora
