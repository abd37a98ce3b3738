#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "agent/voice_vocabulary.h"
#include "platform/agent_control.h"

namespace velmora {

/// A character's commands, and the ear for them.
class CommandCollection : public AgentCommands {
public:
    void Add(const std::string& name, const std::string& caption, const std::string& voice, bool enabled,
             bool visible) override;
    AgentCommand& Item(std::string_view name) override;
    void setCaption(const std::string& caption) override { caption_ = caption; }
    void setVoice(const std::string& voice) override { voice_ = voice; }
    void setVisible(bool visible) override { visible_ = visible; }

    const std::string& caption() const { return caption_; }
    const std::string& voice() const { return voice_; }
    bool visible() const { return visible_; }
    /// In the order of adding.
    const std::deque<AgentCommand>& all() const { return commands_; }

    struct Heard {
        std::string name;  ///< empty if no enabled command fits
        int confidence;    ///< -100 then
    };
    /// What the words ask for. A command's own Confidence changes nothing here: whoever is told judges the
    /// score.
    Heard hear(std::string_view words);

private:
    AgentCommand* find(std::string_view name);

    std::deque<AgentCommand> commands_;
    std::optional<agent::VoiceVocabulary> ear_;  ///< made when it is first needed
    std::string caption_;
    std::string voice_;
    bool visible_ = false;
};

}  // namespace velmora
