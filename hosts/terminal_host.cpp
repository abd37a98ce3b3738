#include "hosts/terminal_host.h"

#include <unistd.h>

#include <iostream>
#include <variant>

#include "agent/qt/package_reader.h"
#include "hosts/stdin_lines.h"
#include "platform/console/terminal.h"
#include "platform/console/terminal_ports.h"
#include "platform/engine/engine_agent.h"
#include "platform/engine/instant_stage.h"
#include "program/program.h"

namespace velmora {
namespace {

/// The default character, performing without taking time.
Actor loadActor(const Machine& machine) {
    auto result =
        agent::readPackage(machine.charactersFolder(), QString::fromStdString(machine.characterPackage()));
    if (const auto* reason = std::get_if<std::string>(&result)) {
        std::cerr << "velmora: " << *reason << "\n";
        return {};
    }
    return {std::get<agent::Package>(result).rig.name, std::make_unique<InstantStage>()};
}

}  // namespace

int runInTerminal(const Options& options, Folders folders) {
    Machine machine(options, std::move(folders));
    LinePrinter printer(std::cout);
    TerminalShell shell(printer, nullptr);
    TerminalTray tray(printer, nullptr);
    TerminalPointer pointer;
    EngineAgent agent({.loop = machine.loop, .random = machine.random, .load = [&](EngineAgent&) {
                           return loadActor(machine);
                       }});
    Platform platform = machine.platform(shell, tray, pointer, agent);
    Program program(platform);
    DescriptorLines input(STDIN_FILENO);
    Terminal terminal({.loop = machine.loop,
                       .forms = program.forms(),
                       .boxes = machine.boxes,
                       .agent = agent,
                       .tray = tray,
                       .pointer = pointer,
                       .shell = shell,
                       .input = input,
                       .printer = printer});

    program.start();
    machine.loop.run();
    if (!terminal.cut()) program.terminate();
    terminal.finish();
    return 0;
}

}  // namespace velmora
