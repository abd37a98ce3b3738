#pragma once

#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/ini_settings_file.h"
#include "platform/posix/sockets/posix_winsocks.h"
#include "tests/support/in_memory_files.h"
#include "tests/support/waiting_loop.h"

namespace velmora {

/// An address of the loopback network that no other test process uses.
inline std::string loopbackAddress(int host) {
    constexpr int part = 250;
    const int number = static_cast<int>(getpid());
    return "127." + std::to_string(1 + number / part % part) + "." + std::to_string(1 + number % part) + "." +
           std::to_string(host);
}

/// This machine's own sockets, as a program has them, with a loop to run them.
class RealNetwork {
public:
    explicit RealNetwork(WaitingLoop& loop) : loop_(loop) { files.createFolder("/app"); }

    std::unique_ptr<PosixWinsocks> sockets(const std::string& address) {
        return std::make_unique<PosixWinsocks>(
            PosixWinsocks::Needs{.loop = loop_.loop,
                                 .post = [this](std::function<void()> call) { loop_.post(std::move(call)); },
                                 .settings = machineSettings_,
                                 .address = address,
                                 .report = [this](const std::string& line) { reported.push_back(line); }});
    }

    InMemoryFiles files;
    std::vector<std::string> reported;

private:
    WaitingLoop& loop_;
    IniSettingsFile settings_{files};
    MachineSettings machineSettings_{settings_, "/app"};
};

}  // namespace velmora
