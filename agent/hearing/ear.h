#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "agent/hearing/audio_source.h"
#include "agent/hearing/decoder.h"
#include "agent/hearing/recogniser.h"
#include "agent/request_queue.h"

namespace agent {

/// A command to listen for.
struct EarCommand {
    std::string name;
    std::string grammar;

    bool operator==(const EarCommand&) const = default;
};

/// A phrase, as the commands' names tell it.
struct EarPhrase {
    std::string words;                   ///< as they were heard
    std::string name;                    ///< of the likeliest command; empty if it is far from all
    int score = 0;                       ///< -100 to 100; -60 or less: most likely no command
    std::vector<std::string> runnersUp;  ///< at most two other commands, the likelier first
};

/// What an ear tells, each in a turn of the caller's loop. None is called after `onEnd`, after `stop`, or
/// after the ear begins to listen to something else.
struct EarEvents {
    /// What is said from now on is heard: the microphone is open.
    std::function<void()> onBegin = {};
    /// Somebody has begun to speak a phrase, of which nothing is known yet.
    std::function<void()> onSpeech = {};
    std::function<void(const EarPhrase&)> onPhrase;
    /// Listening is over; with a sentence that says why, if it ended for a failure.
    std::function<void(const std::string& failure)> onEnd;
};

/// Listens for commands, in a thread of its own, which loads what it needs when it first hears something:
/// then, and whenever the commands have changed, that takes about a second.
class Ear {
public:
    struct Needs {
        Post post;  ///< may be called from the ear's thread, until the ear is destroyed
        HearingModel model = {};
        /// Called in the ear's thread; null: there is no microphone.
        std::function<std::unique_ptr<AudioSource>()> microphone = openMicrophone;
        /// What it has loaded is large: given back when nothing was heard for so long.
        std::chrono::milliseconds patience = std::chrono::minutes(5);
    };
    explicit Ear(Needs needs);
    ~Ear();
    Ear(const Ear&) = delete;
    Ear& operator=(const Ear&) = delete;

    /// Listens to the microphone, for one phrase; gives up after ten seconds in which nobody speaks.
    void listen(std::vector<EarCommand> commands, EarEvents events);

    /// Listens to a WAV file (`readWav`), for all the phrases in it.
    void hear(const std::string& path, std::vector<EarCommand> commands, EarEvents events);

    /// Whoever was speaking has said it all: the phrase under way ends with what has been said up to now, and
    /// so does the listening.
    void finishPhrase();

    /// Listens no more. Nothing to stop is no failure.
    void stop();

private:
    class Worker;
    std::shared_ptr<Worker> worker_;
};

}  // namespace agent
