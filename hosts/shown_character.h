#pragma once

#include <memory>
#include <string>

#include "agent/qt/qt_character.h"
#include "agent/voice/voice.h"
#include "hosts/machine.h"
#include "platform/engine/engine_agent.h"
#include "platform/qt/character_options.h"

namespace velmora {

/// How a person wants the character to speak, on the sound device of that name.
agent::VoiceSettings voiceSettings(const qt::SpeechChoice& choice, const std::string& device);

/// Whether the figure's voice is to be heard; a silent one keeps the pace.
enum class Sound { asConfigured, none };

/// Lets the figure behave, look and sound as is set now.
void applySettings(agent::QtCharacter& figure, const MachineSettings& settings, Sound sound);

/// The default character on the desktop where it stood last, its mouse events going to the server; nothing,
/// after a sentence on standard error, if it can't be loaded.
std::unique_ptr<agent::QtCharacter> loadShownCharacter(Machine& machine, EngineAgent& server, Sound sound);

}  // namespace velmora
