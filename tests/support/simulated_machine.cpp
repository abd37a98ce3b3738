#include "tests/support/simulated_machine.h"

#include <algorithm>
#include <stdexcept>

#include "core/user_list.h"
#include "tests/support/simulated_program.h"

namespace velmora {

SimulatedMachine::SimulatedMachine() = default;
SimulatedMachine::~SimulatedMachine() {
    while (!programs_.empty()) programs_.pop_back();
}

void SimulatedMachine::setting(const std::string& folder, std::string_view section, std::string_view key,
                               std::string_view value, const std::string& file) {
    files.createFolder(folder);
    IniSettingsFile(files).write(section, key, value, path(folder, file));
}

void SimulatedMachine::users(const std::string& folder, const std::vector<std::string>& entries) {
    files.put(path(folder, UserList::fileName), UserList::encode(entries));
}

SimulatedMailbox& SimulatedMachine::pop3(const std::string& host, std::vector<std::string> messages) {
    return *mailboxes_.emplace_back(std::make_unique<SimulatedMailbox>(network, host, std::move(messages)));
}

SimulatedProgram& SimulatedMachine::startFor(std::string_view user) {
    setting("/home", "Options", "Default", "True");
    if (!user.empty()) setting("/home", "User", "Name", user);
    return start("/home");
}

SimulatedProgram& SimulatedMachine::start(const std::string& folder) {
    files.createFolder(folder);
    programs_.push_back(std::make_unique<SimulatedProgram>(*this, folder));
    SimulatedProgram& program = *programs_.back();
    settle();
    return program;
}

void SimulatedMachine::settle() {
    constexpr int limit = 1'000'000;
    for (int turns = 0; turns < limit; ++turns) {
        const auto next = std::find_if(programs_.begin(), programs_.end(),
                                       [](const auto& program) { return program->due(); });
        if (next == programs_.end()) return;
        (*next)->resume();
    }
    throw std::logic_error("the programs never come to rest");
}

void SimulatedMachine::advance(std::chrono::milliseconds span) {
    const auto target = now_ + span;
    settle();
    for (;;) {
        std::optional<std::chrono::milliseconds> next;
        for (const auto& program : programs_) {
            const auto wakeAt = program->wakeAt_;
            if (!program->ended() && wakeAt && *wakeAt <= target && (!next || *wakeAt < *next)) next = wakeAt;
        }
        if (!next) break;
        now_ = std::max(now_, *next);
        settle();
    }
    now_ = target;
}

bool SimulatedMachine::lockFolder(const std::string& folder, const SimulatedProgram& program) {
    return locks_.try_emplace(folder, &program).first->second == &program;
}

void SimulatedMachine::unlockFolder(const SimulatedProgram& program) {
    std::erase_if(locks_, [&program](const auto& lock) { return lock.second == &program; });
}

}  // namespace velmora
