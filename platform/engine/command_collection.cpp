#include "platform/engine/command_collection.h"

#include <algorithm>
#include <vector>

#include "base/failure.h"

namespace velmora {
namespace {

constexpr int notRecognised = -100;

}  // namespace

AgentCommand* CommandCollection::find(std::string_view name) {
    const auto found = std::ranges::find(commands_, name, &AgentCommand::Name);
    return found == commands_.end() ? nullptr : &*found;
}

void CommandCollection::Add(const std::string& name, const std::string& caption, const std::string& voice,
                            bool enabled, bool visible) {
    if (find(name)) throw Failure(errors::duplicateKey);
    commands_.push_back({name, caption, voice, enabled, visible});
    ear_.reset();
}

AgentCommand& CommandCollection::Item(std::string_view name) {
    AgentCommand* command = find(name);
    if (!command) throw Failure(errors::objectNotSet);
    return *command;
}

CommandCollection::Heard CommandCollection::hear(std::string_view words) {
    if (!ear_) {
        std::vector<std::string_view> grammars;
        for (const AgentCommand& command : commands_) grammars.emplace_back(command.Voice);
        ear_.emplace(grammars);
    }
    const auto heard =
        ear_->recognise(words, [this](std::size_t command) { return commands_[command].Enabled; });
    if (!heard) return {{}, notRecognised};
    return {commands_[heard->command].Name, heard->score};
}

}  // namespace velmora
