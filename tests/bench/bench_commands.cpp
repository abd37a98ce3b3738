// What the commands cost: how long it takes to find what a phrase asks for, and to learn the commands.

#include <array>
#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "character/vocabulary.h"
#include "platform/engine/command_collection.h"
#include "tests/bench/benchmark.h"

namespace {

using namespace velmora;
using namespace velmora::bench;

constexpr int runs = 1001;

constexpr std::array phrases{
    "please show me the general menu now",
    "new inter net search",
    "move to mouse pointer",
    "open item 999 window",
    "what is the weather going to be like tomorrow",
};

CommandLists fullLists() {
    CommandLists lists;
    lists.office.name = [](int row) { return "[start|open]Spreadsheet " + std::to_string(row); };
    lists.favourites.name = [](int row) { return "[visit|go to]Newspaper " + std::to_string(row); };
    return lists;
}

template <typename Work>
double medianMicroseconds(const Work& work) {
    std::vector<double> microseconds;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
        microseconds.push_back(taken.count());
    }
    return median(microseconds);
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path&) {
    const std::string often = "median of " + std::to_string(runs);
    const CommandLists lists = fullLists();
    report("commands and grammars with both lists full",
           medianMicroseconds([&lists] {
               CommandCollection collection;
               InitCommands(collection, lists);
               if (collection.hear("tip").name != "Tip") throw std::runtime_error("a tip is not heard");
           }) / 1000,
           "ms", often + ", until the first phrase is heard");

    for (const int count : {48, 1000}) {
        CommandCollection collection;
        InitCommands(collection, lists);
        for (int item = static_cast<int>(collection.all().size()); item < count; ++item) {
            const std::string name = "Item " + std::to_string(item);
            collection.Add(name, name, "[show|open|run]" + name + "[window|dialog]", true, false);
        }
        collection.hear("tip");  // the first phrase makes the index
        double slowest = 0;
        for (const char* phrase : phrases) {
            slowest = std::max(slowest, medianMicroseconds([&] { collection.hear(phrase); }));
        }
        report("phrase among " + std::to_string(count) + " commands", slowest, "us",
               often + ", the slowest of " + std::to_string(phrases.size()) + " phrases");
    }
}
