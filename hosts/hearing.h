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
    std::vector<Choice> choices;  ///< other commands that may have been meant
};

/// Brings an ear and the character together: listens while the character is told to, and hands on what was
/// heard.
class Hearing : public AgentObserver {
public:
    struct Needs {
        EngineAgent& agent;  ///< outlives this object
        agent::Post post;    ///< into the program's loop, from any thread
        /// What `Listen` reaches, called in another thread; empty: nothing.
        std::function<std::unique_ptr<agent::AudioSource>()> microphone;
    };
    explicit Hearing(Needs needs);

    /// Hears a WAV file. `done` is told of the end, with a sentence if the file can't be heard. Whatever was
    /// listened to before is dropped. Fails with 91 if no character is loaded.
    void hear(const std::string& path, std::function<void(const std::string& failure)> done);

    /// As if the character had been told to listen.
    void listenAsked(bool on) override;

    /// Push to talk: listens from now on until `release`. Does nothing where there is no microphone or no
    /// character.
    void press();
    void release() { ear_.finishPhrase(); }

    /// Listening to the microphone begins or ends, with a sentence if it ended for a failure.
    std::function<void(bool listening, const std::string& failure)> onListening;
    /// A phrase was heard, whether or not it is a command. Called before the character is told.
    std::function<void(const HeardTip&)> onTip;

private:
    std::vector<agent::EarCommand> commands() const;
    void handOn(const agent::EarPhrase& phrase);
    HeardTip tipFor(const agent::EarPhrase& phrase) const;
    void tellListening(bool listening, const std::string& failure) const;

    Needs needs_;
    agent::Ear ear_;
};

}  // namespace velmora
