#include "hosts/machine.h"

#include <random>

#include "platform/posix/data_folders.h"

namespace velmora {

Machine::Machine(const Options& options, Folders folders_)
    : folders(std::move(folders_)),
      application(folders.application, folders.installed),
      machineSettings(settings, folders.application),
      clock(loop, options.clock),
      seed(options.seed ? *options.seed : std::random_device{}()) {
    loopHost.carry(&loop);
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
    return {loop,  application, files,   settings, machineSettings, clock, random, boxes,
            shell, tray,        pointer, agent,    winsocks,        inets, link_};
}

}  // namespace velmora
