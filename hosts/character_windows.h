#pragma once

#include <memory>

#include "agent/voice/voice.h"
#include "hosts/machine.h"
#include "platform/qt/character_options.h"

namespace velmora {

/// The two windows of the character server: how it speaks, and which character it is. Each is made when it is
/// first asked for.
class CharacterWindows {
public:
    /// The machine outlives this.
    explicit CharacterWindows(Machine& machine) : machine_(machine) {}

    void showOptions();
    void showChooser();

private:
    qt::CharacterSettings settings();
    void tryVoice(const qt::SpeechChoice& choice);
    QPixmap preview(const std::string& package) const;

    Machine& machine_;
    std::unique_ptr<qt::SpeechOptions> options_;
    std::unique_ptr<qt::CharacterChooser> chooser_;
    std::unique_ptr<agent::Voice> voice_;
};

}  // namespace velmora
