#pragma once

#include <memory>

#include "agent/qt/package_reader.h"
#include "agent/voice/voice.h"
#include "hosts/machine.h"
#include "platform/engine/agent_observer.h"
#include "platform/qt/character_options.h"

namespace velmora {

/// The two windows of the character server: how it speaks, and which character it is. Each is made when it is
/// first asked for.
class CharacterWindows : public AgentObserver {
public:
    /// The machine outlives this.
    explicit CharacterWindows(Machine& machine) : machine_(machine) {}

    void propertiesAsked() override;
    void choiceAsked() override;

private:
    qt::CharacterSettings settings();
    void tryVoice(const qt::SpeechChoice& choice);
    agent::PackageResult readPackage(const std::string& package) const;
    QPixmap preview(const std::string& package) const;

    Machine& machine_;
    std::unique_ptr<qt::SpeechOptions> options_;
    std::unique_ptr<qt::CharacterChooser> chooser_;
    std::unique_ptr<agent::Voice> voice_;
};

}  // namespace velmora
