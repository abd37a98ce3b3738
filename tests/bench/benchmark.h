#pragma once

#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

namespace velmora::bench {

/// The middle one of these values, or the mean of the two in the middle. `values` must not be empty.
double median(std::vector<double> values);

/// Prints one thing measured as a line of the table: fields separated by a TAB. `how` says what was done, and
/// how often.
void report(std::string_view what, double value, std::string_view unit, std::string_view how);

/// Runs a benchmark with the build folder that the command line names. Returns the exit status: 1 with a line
/// on standard error if the folder is missing or the benchmark throws.
int runBenchmark(int argc, char** argv,
                 const std::function<void(const std::filesystem::path& build)>& benchmark);

}  // namespace velmora::bench
