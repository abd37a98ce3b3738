#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/request_queue.h"
#include "platform/agent_control.h"
#include "platform/engine/agent_observer.h"
#include "platform/engine/command_collection.h"
#include "platform/loop.h"
#include "platform/random.h"

namespace velmora {

/// A character that has been found and can perform.
struct Actor {
    std::string name;
    std::unique_ptr<agent::Stage> stage;
};

/// The character server on the engine's request queue, whatever the stage shows.
class EngineAgent : public AgentControl {
public:
    struct Needs {
        Loop& loop;
        Random& random;  ///< picks among the alternatives of a spoken text
        std::function<Actor(EngineAgent&)>
            load;  ///< the default character; an actor without a stage: there is none
    };
    explicit EngineAgent(Needs needs);
    ~EngineAgent() override;

    /// The observer is there for as long as anything is asked of the character.
    void add(AgentObserver& observer) { observers_.push_back(&observer); }

    void CharactersLoad(const std::string& id) override;
    AgentCharacter& CharactersItem(const std::string& id) override;
    void CharactersUnload(const std::string& id) override;
    void setPropertySheetVisible(bool visible) override;
    void ShowDefaultCharacterProperties() override;

    /// The loaded character's commands; nullptr if none is loaded.
    const CommandCollection* commands() const;

    /// Whether a character is loaded and on the screen.
    bool visible() const;

    /// A mouse on the character; each in a turn of its own.
    void clicked(const AgentClick& click);
    void doubleClicked(const AgentClick& click);

    /// Tell the observers of a microphone: when it goes on and off, and when somebody begins to speak.
    void listening(bool on);
    void speechBegun();

    /// What a microphone has heard: looks for the command, tells the observers, and raises `Command` in a
    /// turn of its own, also for words that fit no command. Fails with 91 if no character is loaded.
    void say(const std::string& words);
    /// What a recogniser made of a phrase: tells the observers, and raises `Command` in a turn of its own.
    void heard(const AgentUserInput& input);
    /// Raises `Command` in a turn of its own, as if a person had picked or said it.
    void commanded(const AgentUserInput& input);

private:
    class Character;

    void tell(const std::function<void(AgentObserver&)>& what) const;

    Needs needs_;
    std::vector<AgentObserver*> observers_;
    std::string id_;  ///< of the loaded character, empty if there is none
    std::unique_ptr<Character> character_;
};

}  // namespace velmora
