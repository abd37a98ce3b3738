#include "hosts/shown_character.h"

#include <iostream>
#include <optional>
#include <variant>

#include "agent/voice/voice.h"
#include "base/conversions.h"
#include "base/failure.h"

namespace velmora {
namespace {

/// Nothing for an empty text, or one that is no number.
std::optional<int> number(const std::string& text) {
    try {
        return toInteger16(text);
    } catch (const Failure&) {
        return {};
    }
}

}  // namespace

agent::VoiceSettings voiceSettings(const qt::SpeechChoice& choice, const std::string& device) {
    agent::VoiceSettings voice;
    if (!choice.voice.empty()) voice.name = choice.voice;
    voice.rate = number(choice.rate);
    voice.pitch = number(choice.pitch);
    voice.device = device;
    return voice;
}

std::unique_ptr<agent::QtCharacter> loadShownCharacter(Machine& machine, EngineAgent& server, Sound sound) {
    agent::QtCharacter::Options options;
    const auto speech = [&machine](std::string_view key) {
        return machine.machineSettings.value("Speech", key);
    };
    const qt::SpeechChoice choice{speech("Voice"), speech("Rate"), speech("Pitch")};
    options.voice = [settings = voiceSettings(choice, sound == Sound::none ? "none" : speech("Device"))](
                        const agent::CharacterVoice& character, agent::Post post) {
        return agent::makeVoice(settings, character, std::move(post));
    };
    options.pick = [random = std::make_shared<SeededRandom>(machine.seed)](std::size_t count) {
        return static_cast<std::size_t>(random->Rnd() * static_cast<double>(count));
    };
    const std::string package = machine.characterPackage();
    auto loaded = agent::QtCharacter::load(machine.charactersFolder(package), package, std::move(options));
    if (const auto* reason = std::get_if<std::string>(&loaded)) {
        std::cerr << "velmora: " << *reason << "\n";
        return nullptr;
    }
    auto character = std::move(std::get<std::unique_ptr<agent::QtCharacter>>(loaded));
    character->onClick = [&server](int button, int shift, int x, int y) {
        server.clicked({button, shift, x, y});
    };
    character->onDoubleClick = [&server](int button, int shift, int x, int y) {
        server.doubleClicked({button, shift, x, y});
    };
    return character;
}

}  // namespace velmora
