#include "platform/engine/engine_agent.h"

#include <utility>

#include "agent/speech_text.h"
#include "base/failure.h"

namespace velmora {
namespace {

/// A request of the engine's as the logic keeps it.
class KeptRequest : public AgentRequest {
public:
    explicit KeptRequest(agent::RequestHandle handle) : handle_(std::move(handle)) {}

private:
    agent::RequestHandle handle_;  // keeping it is what asks for the event
};

}  // namespace

class EngineAgent::Character : public AgentCharacter {
public:
    Character(EngineAgent& server, Actor actor)
        : server_(server),
          actor_(std::move(actor)),
          queue_(std::make_unique<agent::RequestQueue>(
              *actor_.stage,
              [&loop = server.needs_.loop](std::function<void()> call) { loop.post(std::move(call)); })) {
        queue_->onComplete = [this](const agent::RequestHandle& handle) {
            if (server_.RequestComplete) server_.RequestComplete(std::make_shared<KeptRequest>(handle));
        };
    }

    void unload() {
        queue_.reset();
        server_.needs_.loop.retire(
            std::shared_ptr<agent::Stage>(std::move(actor_.stage)));  // it may be on the stack
    }

    std::string Name() const override {
        queue();
        return actor_.name;
    }
    bool Visible() const override { return queue().visible(); }
    void setLanguageID(int) override { queue(); }
    void setAutoPopupMenu(bool) override { queue(); }

    Request Show() override {
        return ask({agent::Action::show, {}}, [](AgentObserver& observer) { observer.showAsked(); });
    }
    Request Hide() override {
        return ask({agent::Action::hide, {}}, [](AgentObserver& observer) { observer.hideAsked(); });
    }
    Request Speak(const std::string& text) override {
        queue();
        std::string chosen = agent::chooseAlternative(text, [this](std::size_t count) {
            return static_cast<std::size_t>(server_.needs_.random.Rnd() * static_cast<double>(count));
        });
        if (agent::asksForLastLine(chosen)) chosen = lastLine_;
        lastLine_ = chosen;
        return ask({agent::Action::speak, chosen},
                   [&](AgentObserver& observer) { observer.speakAsked(text, chosen); });
    }
    Request Think(const std::string& text) override {
        return ask({agent::Action::think, text}, [&](AgentObserver& observer) { observer.thinkAsked(text); });
    }
    Request Play(const std::string& animation) override {
        return ask({agent::Action::play, animation},
                   [&](AgentObserver& observer) { observer.playAsked(animation); });
    }
    Request MoveTo(int x, int y) override {
        return ask({agent::Action::moveTo, {}, x, y},
                   [&](AgentObserver& observer) { observer.moveAsked(x, y); });
    }
    void StopAll() override {
        queue();
        server_.tell([](AgentObserver& observer) { observer.stopAllAsked(); });
        queue().stopAll();
    }
    void Listen(bool on) override {
        queue();
        server_.tell([on](AgentObserver& observer) { observer.listenAsked(on); });
    }
    CommandCollection& Commands() override {
        queue();
        return commands_;
    }

private:
    agent::RequestQueue& queue() const {
        if (!queue_) throw Failure(errors::objectNotSet);
        return *queue_;
    }

    Request ask(agent::Order order, const std::function<void(AgentObserver&)>& what) {
        queue();
        server_.tell(what);
        return std::make_shared<KeptRequest>(queue().ask(std::move(order)));
    }

    EngineAgent& server_;
    Actor actor_;
    std::unique_ptr<agent::RequestQueue> queue_;
    CommandCollection commands_;
    std::string lastLine_;  // what it was last asked to speak
};

EngineAgent::EngineAgent(Needs needs) : needs_(std::move(needs)) {}
EngineAgent::~EngineAgent() = default;

void EngineAgent::tell(const std::function<void(AgentObserver&)>& what) const {
    for (AgentObserver* observer : observers_) what(*observer);
}

void EngineAgent::CharactersLoad(const std::string& id) {
    Actor actor = needs_.load(*this);
    if (!actor.stage) throw Failure(errors::objectNotSet);
    tell([&actor](AgentObserver& observer) { observer.loaded(actor.name); });
    character_ = std::make_unique<Character>(*this, std::move(actor));
    id_ = id;
}

AgentCharacter& EngineAgent::CharactersItem(const std::string& id) {
    if (id_.empty() || id != id_) throw Failure(errors::objectNotSet);
    return *character_;
}

void EngineAgent::CharactersUnload(const std::string& id) {
    static_cast<void>(CharactersItem(id));
    character_->unload();  // the object stays: who still holds it is answered with failures
    id_.clear();
}

const CommandCollection* EngineAgent::commands() const {
    return id_.empty() ? nullptr : &character_->Commands();
}

bool EngineAgent::visible() const {
    return !id_.empty() && character_->Visible();
}

void EngineAgent::setPropertySheetVisible(bool visible) {
    if (!visible) return;
    tell([](AgentObserver& observer) { observer.propertiesAsked(); });
}

void EngineAgent::ShowDefaultCharacterProperties() {
    tell([](AgentObserver& observer) { observer.choiceAsked(); });
}

void EngineAgent::clicked(const AgentClick& click) {
    needs_.loop.turn([&] {
        if (Click) Click(click);
    });
}

void EngineAgent::doubleClicked(const AgentClick& click) {
    needs_.loop.turn([&] {
        if (DblClick) DblClick(click);
    });
}

void EngineAgent::listening(bool on) {
    tell([on](AgentObserver& observer) { observer.listening(on); });
}

void EngineAgent::speechBegun() {
    tell([](AgentObserver& observer) { observer.speechBegun(); });
}

void EngineAgent::say(const std::string& words) {
    if (id_.empty()) throw Failure(errors::objectNotSet);
    speechBegun();
    auto heard = character_->Commands().hear(words);
    this->heard({std::move(heard.name), words, heard.confidence});
}

void EngineAgent::heard(const AgentUserInput& input) {
    tell([&input](AgentObserver& observer) { observer.heard(input.Voice, input.Name, input.Confidence); });
    commanded(input);
}

void EngineAgent::commanded(const AgentUserInput& input) {
    needs_.loop.turn([&] {
        if (Command) Command(input);
    });
}

}  // namespace velmora
