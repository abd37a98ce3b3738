#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace velmora::bench {

/// The middle one of these values, or the mean of the two in the middle. `values` must not be empty.
double median(std::vector<double> values);

/// Prints one thing measured as a line of the table: fields separated by a TAB. `how` says what was done, and
/// how often.
void report(std::string_view what, double value, std::string_view unit, std::string_view how);

/// What a benchmark does, with the build folder that its command line names; each defines it. What it throws
/// becomes a line on standard error and the exit status 1.
void benchmark(const std::filesystem::path& build);

}  // namespace velmora::bench
