#include "hosts/shown_character.h"

#include <iostream>
#include <optional>
#include <variant>

#include "agent/voice/voice.h"
#include "base/conversions.h"
#include "base/failure.h"

namespace velmora {
namespace {

/// A number of the `[Speech]` section; nothing for an empty one or one that is no number.
std::optional<int> number(const MachineSettings& settings, std::string_view key) {
    try {
        return toInteger16(settings.value("Speech", key));
    } catch (const Failure&) {
        return {};
    }
}

agent::VoiceSettings voiceSettings(const MachineSettings& settings, Sound sound) {
    agent::VoiceSettings voice;
    const std::string name = settings.value("Speech", "Voice");
    if (!name.empty()) voice.name = name;
    voice.rate = number(settings, "Rate");
    voice.pitch = number(settings, "Pitch");
    voice.device = sound == Sound::none ? "none" : settings.value("Speech", "Device");
    return voice;
}

}  // namespace

std::unique_ptr<agent::QtCharacter> loadShownCharacter(Machine& machine, EngineAgent& server, Sound sound) {
    agent::QtCharacter::Options options;
    options.voice = [settings = voiceSettings(machine.machineSettings, sound)](const agent::CharacterVoice& character,
                                                                               agent::Post post) {
        return agent::makeVoice(settings, character, std::move(post));
    };
    options.pick = [&random = machine.random](std::size_t count) {
        return static_cast<std::size_t>(random.Rnd() * static_cast<double>(count));
    };
    auto loaded = agent::QtCharacter::load(machine.charactersFolder(),
                                           QString::fromStdString(machine.characterPackage()), std::move(options));
    if (const auto* reason = std::get_if<std::string>(&loaded)) {
        std::cerr << "velmora: " << *reason << "\n";
        return nullptr;
    }
    auto character = std::move(std::get<std::unique_ptr<agent::QtCharacter>>(loaded));
    character->onClick = [&server](int button, int shift, int x, int y) { server.clicked({button, shift, x, y}); };
    character->onDoubleClick = [&server](int button, int shift, int x, int y) {
        server.doubleClicked({button, shift, x, y});
    };
    return character;
}

}  // namespace velmora
