#include "hosts/desktop_host.h"

#include <iostream>
#include <memory>

#include "hosts/character_windows.h"
#include "hosts/desktop_hearing.h"
#include "hosts/shown_character.h"
#include "platform/console/lines.h"
#include "platform/engine/engine_agent.h"
#include "platform/qt/box_view.h"
#include "platform/qt/qt_pointer.h"
#include "platform/qt/qt_shell.h"
#include "platform/qt/qt_tray.h"
#include "platform/qt/views.h"
#include "platform/qt/windows.h"
#include "program/program.h"

namespace velmora {
namespace {

/// Says what would be opened, and starts nothing.
class ShellThatOpensNothing : public qt::QtShell {
public:
    void open(const std::string& target, const std::string& folder) override {
        LinePrinter(std::cout).print({"open", target, folder});
    }
};

}  // namespace

int runOnDesktop(const Options& options, Folders folders) {
    Machine machine(options, std::move(folders));
    const std::unique_ptr<qt::QtShell> shell =
        options.open ? std::make_unique<qt::QtShell>() : std::make_unique<ShellThatOpensNothing>();
    qt::QtTray tray(machine.loop);
    qt::QtPointer pointer;
    CharacterWindows characterWindows(machine);
    EngineAgent agent(
        {.loop = machine.loop, .random = machine.random, .load = [&](EngineAgent& server) -> Actor {
             auto character = loadShownCharacter(machine, server, Sound::asConfigured);
             if (!character) return {};
             const std::string name = character->name();
             characterWindows.setFigure(*character, Sound::asConfigured);
             return {name, std::move(character)};
         }});
    agent.add(characterWindows);
    DesktopHearing hearing({.machine = machine, .agent = agent, .windows = characterWindows, .tray = tray});
    Platform platform = machine.platform(*shell, tray, pointer, agent, machine.link);
    Program program(platform);
    qt::QtWindows windows(program.forms(), qt::views());
    qt::QtBoxView boxView(machine.loop);
    machine.boxes.add(boxView);
    machine.loop.onFailure = [](const Failure& failure) {
        std::cerr << "velmora: " << failure.number << " " << failure.description << "\n";
    };

    program.start();
    machine.loop.run();
    program.terminate();
    return 0;
}

}  // namespace velmora
