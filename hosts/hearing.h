#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "agent/hearing/ear.h"
#include "platform/engine/agent_observer.h"
#include "platform/engine/engine_agent.h"

namespace velmora {

/// What a person is shown of a phrase that was heard.
struct HeardTip {
    std::string text;  ///< the words, or what the command says of a phrase that it can't be sure of
    struct Choice {
        std::string name;
        std::string caption;
    };
    std::vector<Choice> choices;  ///< commands that may have been meant, but for the one that is obeyed
};

/// Brings an ear and the character together: listens while the character is told to, and hands on what was
/// heard.
class Hearing : public AgentObserver {
public:
    struct Needs {
        EngineAgent& agent;  ///< outlives this object
        agent::Post post;    ///< into the program's loop, from any thread
        /// What `Listen` reaches, called in another thread; empty, or null: nothing.
        std::function<std::unique_ptr<agent::AudioSource>()> microphone;
    };
    explicit Hearing(Needs needs);

    /// Hears a WAV file. `done` is told of the end, with a sentence if the file can't be heard. Whatever was
    /// listened to before is dropped. Fails with 91 if no character is loaded.
    void hear(const std::string& path, std::function<void(const std::string& failure)> done);

    /// As if a device that does not answer had failed.
    void giveUp();

    /// As if the character had been told to listen.
    void listenAsked(bool on) override;

    /// Push to talk: listens from now on, until `release` at the latest. Does nothing where no character is
    /// loaded.
    void press();
    void release() { ear_.finishPhrase(); }

    /// Listening has been asked for: `onListening` or `onEnd` follows as soon as the device has answered.
    std::function<void()> onAsked;
    /// The microphone is on: what is said now is heard. The agent's observers are told too, of this and of
    /// the end.
    std::function<void()> onListening;
    /// Listening is over, or never came about: with a sentence if that is a failure.
    std::function<void(const std::string& failure)> onEnd;
    /// A phrase was heard, whether or not it is a command. Called before the character is told.
    std::function<void(const HeardTip&)> onTip;

private:
    std::vector<agent::EarCommand> commands() const;
    void handOn(const agent::EarPhrase& phrase);
    HeardTip tipFor(const agent::EarPhrase& phrase) const;
    void begun();
    void ended(const std::string& failure);
    void over();

    Needs needs_;
    bool listening_ = false;
    agent::Ear ear_;
};

}  // namespace velmora
