#include "tests/bench/benchmark.h"

#include <algorithm>
#include <cstdio>
#include <exception>

namespace velmora::bench {

double median(std::vector<double> values) {
    std::ranges::sort(values);
    const auto middle = values.size() / 2;
    return values.size() % 2 == 1 ? values.at(middle) : (values.at(middle - 1) + values.at(middle)) / 2;
}

void report(std::string_view what, double value, std::string_view unit, std::string_view how) {
    std::printf("%.*s\t%.2f\t%.*s\t%.*s\n", static_cast<int>(what.size()), what.data(), value,
                static_cast<int>(unit.size()), unit.data(), static_cast<int>(how.size()), how.data());
    std::fflush(stdout);
}

}  // namespace velmora::bench

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s BUILD_FOLDER\n", argc > 0 ? argv[0] : "benchmark");
        return 1;
    }
    try {
        velmora::bench::benchmark(argv[1]);
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
        return 1;
    }
}
