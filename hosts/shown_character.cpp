#include "hosts/shown_character.h"

#include <iostream>
#include <optional>
#include <variant>

#include "agent/voice/voice.h"
#include "base/conversions.h"
#include "base/failure.h"
#include "base/text.h"
#include "hosts/figure_place.h"
#include "platform/posix/application_folder.h"

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

bool isOn(const MachineSettings& settings, std::string_view key) {
    return !equalsIgnoringCase(settings.value("Character", key), "False");
}

agent::Habits figureHabits(const MachineSettings& settings) {
    return {.balloon = isOn(settings, "Balloon"),
            .autoHide = isOn(settings, "AutoHide"),
            .idle = isOn(settings, "Idle")};
}

// Pixels to a unit of the rig.
double figureScale(const MachineSettings& settings) {
    return number(settings.value("Character", "Size")).value_or(100) / 100.0;
}

agent::QtCharacter::VoiceMaker voiceMaker(const Machine& machine, Sound sound) {
    const auto speech = [&machine](std::string_view key) {
        return machine.machineSettings.value("Speech", key);
    };
    const qt::SpeechChoice choice{speech("Voice"), speech("Rate"), speech("Pitch")};
    return [wanted = voiceSettings(machine, choice, sound)](const agent::CharacterVoice& character,
                                                            agent::Post post) {
        return agent::makeVoice(wanted, character, std::move(post));
    };
}

}  // namespace

agent::VoiceSettings voiceSettings(const Machine& machine, const qt::SpeechChoice& choice, Sound sound) {
    agent::VoiceSettings voice;
    if (!choice.voice.empty()) voice.name = choice.voice;
    voice.rate = number(choice.rate);
    voice.pitch = number(choice.pitch);
    voice.device = sound == Sound::none ? "none" : machine.machineSettings.value("Speech", "Device");
    voice.recordings = machine.recordings;
    return voice;
}

std::unique_ptr<agent::QtCharacter> loadShownCharacter(Machine& machine, EngineAgent& server, Sound sound) {
    FigurePlace place(machine.settings, stateFolder());
    agent::QtCharacter::Options options{.scale = figureScale(machine.machineSettings),
                                        .habits = figureHabits(machine.machineSettings),
                                        .position = place.kept(),
                                        .voice = voiceMaker(machine, sound)};
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
    character->onPlaced = [place](QPoint corner) mutable { place.keep(corner); };
    return character;
}

void applySettings(agent::QtCharacter& figure, const Machine& machine, Sound sound) {
    const MachineSettings& settings = machine.machineSettings;
    figure.setScale(figureScale(settings));
    figure.setHabits(figureHabits(settings));
    figure.setVoice(voiceMaker(machine, sound));
}

}  // namespace velmora
