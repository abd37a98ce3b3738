#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/request_queue.h"
#include "platform/agent_control.h"
#include "platform/engine/agent_observer.h"
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

    /// The observer outlives this object.
    void add(AgentObserver& observer) { observers_.push_back(&observer); }

    void CharactersLoad(const std::string& id) override;
    AgentCharacter& CharactersItem(const std::string& id) override;
    void CharactersUnload(const std::string& id) override;
    void setPropertySheetVisible(bool visible) override;
    void ShowDefaultCharacterProperties() override;

    /// Whether a character is loaded and on the screen.
    bool visible() const;

    /// A mouse on the character; each in a turn of its own.
    void clicked(const AgentClick& click);
    void doubleClicked(const AgentClick& click);

private:
    class Character;

    void tell(const std::function<void(AgentObserver&)>& what) const;

    Needs needs_;
    std::vector<AgentObserver*> observers_;
    std::string id_;  ///< of the loaded character, empty if there is none
    std::unique_ptr<Character> character_;
};

}  // namespace velmora
