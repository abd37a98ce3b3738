#include "hosts/hearing.h"

#include <algorithm>
#include <utility>

#include "base/failure.h"

namespace velmora {
namespace {

constexpr int floorScore = -60;  // at this or below, no command was heard

}  // namespace

Hearing::Hearing(Needs needs)
    : needs_(std::move(needs)), ear_({.post = needs_.post, .microphone = needs_.microphone}) {}

std::vector<agent::EarCommand> Hearing::commands() const {
    std::vector<agent::EarCommand> enabled;
    const CommandCollection* all = needs_.agent.commands();
    if (!all) throw Failure(errors::objectNotSet);
    for (const AgentCommand& command : all->all()) {
        if (command.Enabled) enabled.push_back({command.Name, command.Voice});
    }
    return enabled;
}

void Hearing::hear(const std::string& path, std::function<void(const std::string&)> done) {
    ear_.hear(path, commands(),
              {.onSpeech = [this] { needs_.agent.speechBegun(); },
               .onPhrase = [this](const agent::EarPhrase& phrase) { handOn(phrase); },
               .onEnd = std::move(done)});
    over();
}

void Hearing::listenAsked(bool on) {
    if (on) return press();
    ear_.stop();
    ended({});
}

void Hearing::giveUp() {
    ear_.stop();
    ended("The microphone does not answer.");
}

void Hearing::press() {
    if (!needs_.agent.commands()) return;
    if (onAsked) onAsked();
    ear_.listen(commands(), {.onBegin = [this] { begun(); },
                             .onSpeech = [this] { needs_.agent.speechBegun(); },
                             .onPhrase =
                                 [this](const agent::EarPhrase& phrase) {
                                     over();
                                     handOn(phrase);
                                 },
                             .onEnd = [this](const std::string& failure) { ended(failure); }});
}

void Hearing::begun() {
    if (!std::exchange(listening_, true)) needs_.agent.listening(true);
    if (onListening) onListening();
}

void Hearing::ended(const std::string& failure) {
    over();
    if (onEnd) onEnd(failure);
}

void Hearing::over() {
    if (std::exchange(listening_, false)) needs_.agent.listening(false);
}

void Hearing::handOn(const agent::EarPhrase& phrase) {
    if (!needs_.agent.commands()) return;  // it has been unloaded meanwhile
    if (onTip) onTip(tipFor(phrase));
    const bool none = phrase.score <= floorScore;
    needs_.agent.heard({none ? std::string() : phrase.name, phrase.words, phrase.score});
}

HeardTip Hearing::tipFor(const agent::EarPhrase& phrase) const {
    HeardTip tip{phrase.words, {}};
    const auto& all = needs_.agent.commands()->all();
    const auto named = [&all](const std::string& name) {
        return std::ranges::find(all, name, &AgentCommand::Name);
    };
    const auto likeliest = named(phrase.name);
    if (likeliest == all.end()) return tip;
    const int asked = std::max(likeliest->Confidence, floorScore);
    if (phrase.score <= asked && !likeliest->ConfidenceText.empty()) tip.text = likeliest->ConfidenceText;
    if (phrase.score <= floorScore) tip.choices.push_back({likeliest->Name, likeliest->Caption});
    for (const std::string& name : phrase.runnersUp) {
        if (const auto other = named(name); other != all.end()) tip.choices.push_back({name, other->Caption});
    }
    return tip;
}

}  // namespace velmora
