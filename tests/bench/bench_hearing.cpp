// How long the character needs to understand what it has heard.

#include <chrono>
#include <ctime>
#include <stdexcept>
#include <string>

#include "agent/hearing/recogniser.h"
#include "agent/hearing/sound_out.h"
#include "character/vocabulary.h"
#include "platform/engine/command_collection.h"
#include "tests/bench/benchmark.h"
#include "tests/hearing/spoken.h"

namespace {

using namespace velmora;
using namespace velmora::bench;

constexpr int runs = 11;

double milliseconds(std::chrono::steady_clock::duration taken) {
    return std::chrono::duration<double, std::milli>(taken).count();
}

void hearing(const std::filesystem::path&) {
    CommandCollection collection;
    InitCommands(collection, {});
    std::vector<std::string> grammars;
    for (const AgentCommand& command : collection.all()) grammars.push_back(command.Voice);

    const auto start = std::chrono::steady_clock::now();
    const auto recogniser = agent::Recogniser::load({}, grammars, agent::soundOutByVoice());
    if (!recogniser) throw std::runtime_error("the recogniser's model is missing");
    report("recogniser with all commands", milliseconds(std::chrono::steady_clock::now() - start), "ms",
           "once, before the first phrase");

    for (const char* words :
         {"check mail", "show calculator program", "what a lovely day for a walk it is"}) {
        const agent::Samples samples = test::spoken(words);
        std::vector<double> taken;
        const std::clock_t cpu = std::clock();
        for (int run = 0; run < runs; ++run) {
            const auto begin = std::chrono::steady_clock::now();
            recogniser->recognise(samples);
            taken.push_back(milliseconds(std::chrono::steady_clock::now() - begin));
        }
        const double worked = 1000.0 * static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC / runs;
        report(std::string("\"").append(words).append("\""), median(taken), "ms",
               "median of " + std::to_string(runs) + ", " + std::to_string(static_cast<int>(worked)) +
                   " ms of processor time");
    }
}

}  // namespace

int main(int argc, char** argv) {
    return runBenchmark(argc, argv, hearing);
}
