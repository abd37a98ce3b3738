#include "hosts/terminal_host.h"

#include <unistd.h>

#include <QProcess>
#include <iostream>
#include <memory>
#include <variant>

#include "agent/qt/package_reader.h"
#include "hosts/character_windows.h"
#include "hosts/descriptor_output.h"
#include "hosts/hearing.h"
#include "hosts/mirrored_stage.h"
#include "hosts/shown_character.h"
#include "hosts/stdin_lines.h"
#include "platform/console/terminal.h"
#include "platform/console/terminal_ports.h"
#include "platform/engine/engine_agent.h"
#include "platform/engine/instant_stage.h"
#include "platform/qt/box_view.h"
#include "platform/qt/qt_shell.h"
#include "platform/qt/qt_tray.h"
#include "platform/qt/views.h"
#include "platform/qt/windows.h"
#include "program/program.h"

namespace velmora {
namespace {

/// The default character, performing without taking time.
Actor loadUnseenActor(const Machine& machine) {
    const std::string package = machine.characterPackage();
    auto result = agent::readPackage(machine.charactersFolder(package), package);
    if (const auto* reason = std::get_if<std::string>(&result)) {
        std::cerr << "velmora: " << *reason << "\n";
        return {};
    }
    return {std::get<agent::Package>(result).rig.name, std::make_unique<InstantStage>()};
}

/// Without a desktop of our own, what is opened goes to the user's own opener, as data.
bool openWithDesktop(const QUrl& url) {
    return QProcess::startDetached(QStringLiteral("xdg-open"), {url.toString(QUrl::FullyEncoded)});
}

/// The windows beside a terminal, and the figure that performs what the terminal tells.
class WindowsBeside : public AgentObserver {
public:
    explicit WindowsBeside(Machine& machine)
        : machine_(machine), tray_(machine.loop), characterWindows_(machine) {
        machine.boxes.add(boxes_);
    }

    Actor loadActor(EngineAgent& server) {
        auto figure = loadShownCharacter(machine_, server, Sound::none);
        if (!figure) return {};
        const std::string name = figure->name();
        characterWindows_.setFigure(*figure, Sound::none);
        auto stage = std::make_unique<MirroredStage>(
            std::move(figure), [this](std::function<void()> call) { machine_.loop.post(std::move(call)); });
        stage_ = stage.get();
        return {name, std::move(stage)};
    }
    void stopAllAsked() override { stage_->stop(); }  // asked only of a character that is there

    // The terminal hears as long as it is asked to.
    void listenAsked(bool on) override { characterWindows_.listening(on); }

    Tray& tray() { return tray_; }
    AgentObserver& characterWindows() { return characterWindows_; }

private:
    Machine& machine_;
    qt::QtTray tray_;
    qt::QtBoxView boxes_{machine_.loop};
    CharacterWindows characterWindows_;
    MirroredStage* stage_ = nullptr;
};

}  // namespace

int runInTerminal(const Options& options, Folders folders) {
    Machine machine(options, std::move(folders));
    const std::unique_ptr<WindowsBeside> windows =
        options.windows ? std::make_unique<WindowsBeside>(machine) : nullptr;
    DescriptorOutput output(STDOUT_FILENO);
    std::ostream out(&output);
    LinePrinter printer(out);
    qt::QtShell opener(openWithDesktop);
    TerminalShell shell(printer, options.open ? &opener : nullptr);
    TerminalTray tray(printer, windows ? &windows->tray() : nullptr);
    TerminalPointer pointer;
    TerminalLink link(printer, machine.link);
    EngineAgent agent({.loop = machine.loop, .random = machine.random, .load = [&](EngineAgent& server) {
                           return windows ? windows->loadActor(server) : loadUnseenActor(machine);
                       }});
    Platform platform = machine.platform(shell, tray, pointer, agent, link);
    Program program(platform);
    const auto forms = windows ? std::make_unique<qt::QtWindows>(program.forms(), qt::views()) : nullptr;
    Hearing hearing(
        {.agent = agent,
         .post = [&machine](std::function<void()> call) { machine.loopHost.postFromThread(std::move(call)); },
         .microphone = {}});
    DescriptorLines input(STDIN_FILENO);
    output.onGone = [&input] { input.close(); };  // nobody is there to see what more lines would do
    Terminal terminal({.loop = machine.loop,
                       .forms = program.forms(),
                       .boxes = machine.boxes,
                       .agent = agent,
                       .tray = tray,
                       .pointer = pointer,
                       .shell = shell,
                       .link = link,
                       .hear =
                           [&hearing](const std::string& path, std::function<void(const std::string&)> done) {
                               hearing.hear(path, std::move(done));
                           },
                       .input = input,
                       .printer = printer});
    if (windows) {
        agent.add(*windows);
        agent.add(windows->characterWindows());
    }

    program.start();
    machine.loop.run();
    if (!terminal.cut()) program.terminate();
    terminal.finish();
    return 0;
}

}  // namespace velmora
