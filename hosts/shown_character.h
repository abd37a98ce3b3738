#pragma once

#include <memory>
#include <string>

#include "agent/qt/qt_character.h"
#include "agent/voice/voice.h"
#include "hosts/machine.h"
#include "platform/engine/engine_agent.h"
#include "platform/qt/character_options.h"

namespace velmora {

/// Whether the figure's voice is to be heard; a silent one keeps the pace.
enum class Sound { asConfigured, none };

/// How a person wants the character to speak.
agent::VoiceSettings voiceSettings(const Machine& machine, const qt::SpeechChoice& choice, Sound sound);

/// Lets the figure behave, look and sound as is set now.
void applySettings(agent::QtCharacter& figure, const Machine& machine, Sound sound);

/// The default character on the desktop where it stood last, its mouse events going to the server; nothing,
/// after a sentence on standard error, if it can't be loaded.
std::unique_ptr<agent::QtCharacter> loadShownCharacter(Machine& machine, EngineAgent& server, Sound sound);

}  // namespace velmora
