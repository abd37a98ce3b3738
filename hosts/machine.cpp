#include "hosts/machine.h"

#include <chrono>
#include <iostream>
#include <random>

#include "platform/posix/data_folders.h"

namespace velmora {
namespace {

/// How long no socket must have had anything before a skip goes on.
constexpr std::chrono::milliseconds quietAfterTimer{20};

void complain(const std::string& line) {
    std::cerr << "velmora: " << line << "\n";
}

}  // namespace

Machine::Machine(const Options& options, Folders folders_)
    : folders(std::move(folders_)),
      application(folders.application, folders.installed),
      machineSettings(settings, folders.application),
      clock(loop, options.clock),
      seed(options.seed ? *options.seed : std::random_device{}()),
      recordings(std::make_shared<agent::Recordings>(&complain)),
      winsocks({.loop = loop,
                .post = [this](std::function<void()> call) { loopHost.postFromThread(std::move(call)); },
                .settings = machineSettings,
                .address = options.address,
                .report = &complain}) {
    loopHost.carry(&loop);
    loop.onSkipped = [this](std::chrono::milliseconds waited) {
        return winsocks.untilQuiet(quietAfterTimer, waited);
    };
}

std::string Machine::characterPackage() const {
    return machineSettings.value("Character", "Default");
}

std::string Machine::charactersFolder(const std::string& package) const {
    return velmora::charactersFolder(folders.application, folders.installed, package);
}

long Machine::dial(std::string_view kinds) {
    if (!networkManager.present()) return SystemLink::cannotDial;
    networkManager.connectAny(std::string(kinds));
    return 0;
}

Platform Machine::platform(Shell& shell, Tray& tray, Pointer& pointer, AgentControl& agent, Link& link_) {
    return {.loop = loop,
            .application = application,
            .files = files,
            .settings = settings,
            .machine = machineSettings,
            .clock = clock,
            .random = random,
            .regional = regional,
            .dialogs = boxes,
            .shell = shell,
            .tray = tray,
            .pointer = pointer,
            .agent = agent,
            .winsocks = winsocks,
            .inets = inets,
            .link = link_};
}

}  // namespace velmora
