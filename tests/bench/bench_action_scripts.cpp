// What the longest action script costs: the time to hand it over, and what its requests hold until they are
// performed.

#include <malloc.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "character/action_scripts.h"
#include "platform/boxes.h"
#include "platform/engine/engine_agent.h"
#include "platform/engine/instant_stage.h"
#include "platform/posix/posix_files.h"
#include "tests/bench/benchmark.h"
#include "tests/support/scratch_profile.h"

namespace {

using namespace velmora;
using namespace velmora::bench;

constexpr int lines = 32'767;
constexpr int runs = 51;

struct StoppedHost : LoopHost {
    std::chrono::milliseconds elapsed() const override { return {}; }
    void serve(std::optional<std::chrono::milliseconds>) override {}
};

class Owner : public Form {
public:
    explicit Owner(Forms& forms) : Form(forms, "Owner", "Owner") {}
    Menu mnuScriptOpen{*this, "mnuScriptOpen", {}};
};

std::string longestScript() {
    std::string script;
    for (int line = 0; line < lines; ++line) {
        script.append(line % 2 == 0 ? "Play:Congratulate_2" : "Say:This is the sentence of line ");
        if (line % 2 == 1) script.append(std::to_string(line));
        script.append("\r\n");
    }
    return script;
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path&) {
    StoppedHost host;
    Loop loop(host);
    SeededRandom random(1);
    EngineAgent agent({.loop = loop, .random = random, .load = [](EngineAgent&) {
                           return Actor{"Nobody", std::make_unique<InstantStage>()};
                       }});
    agent.CharactersLoad("default");
    AgentCharacter& character = agent.CharactersItem("default");

    Forms forms(loop);
    Owner owner(forms);
    Boxes boxes(loop);
    FileDialogs dialogs(boxes);
    const blackbox::ScratchProfile profile;
    PosixFiles files;
    const std::string file = profile.folder() / "Long.vls";
    files.replace(file, longestScript(), Privacy::shared);
    ActionScripts scripts({.mnuScriptOpen = owner.mnuScriptOpen,
                           .fileDialogs = dialogs,
                           .files = files,
                           .dialogs = boxes,
                           .Character = [&character]() -> AgentCharacter& { return character; },
                           .AgentVisible = [] {}});

    std::vector<double> milliseconds;
    std::vector<double> megabytes;
    for (int run = 0; run < runs; ++run) {
        const std::size_t before = mallinfo2().uordblks;
        const auto start = std::chrono::steady_clock::now();
        scripts.run(file);
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
        if (boxes.newest()) throw std::runtime_error("the script fails");
        const std::size_t after = mallinfo2().uordblks;
        milliseconds.push_back(taken.count());
        megabytes.push_back(static_cast<double>(after - before) / 1e6);
        character.StopAll();
    }
    const std::string often = "median of " + std::to_string(runs);
    report("script of 32,767 lines handed over", median(milliseconds), "ms",
           often + ", the file read each time");
    report("its requests in the character's queue", median(megabytes), "MB", often + ", allocated memory");
}
