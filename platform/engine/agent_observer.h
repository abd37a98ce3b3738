#pragma once

#include <string>

namespace velmora {

/// Told of everything that the program asks of the character, at the call and in call order, even if the
/// request later fails or is dropped.
class AgentObserver {
public:
    virtual ~AgentObserver() = default;
    virtual void loaded(const std::string& /*name*/) {}
    virtual void showAsked() {}
    virtual void hideAsked() {}
    virtual void playAsked(const std::string& /*animation*/) {}
    /// `text` as it was handed over; `chosen` is the one alternative of it that will be said, with its tags.
    virtual void speakAsked(const std::string& /*text*/, const std::string& /*chosen*/) {}
    virtual void thinkAsked(const std::string& /*text*/) {}
    virtual void moveAsked(int /*x*/, int /*y*/) {}
    virtual void stopAllAsked() {}
    virtual void listenAsked(bool /*on*/) {}
    /// The microphone is on, or off again: whoever turned it on, and for whatever reason it went off.
    virtual void listening(bool /*on*/) {}
    /// Somebody has begun to speak.
    virtual void speechBegun() {}
    /// What a recognition made of the words, before the character's program is told: `command` is empty if
    /// nothing fits.
    virtual void heard(const std::string& /*words*/, const std::string& /*command*/, int /*confidence*/) {}
    virtual void propertiesAsked() {}
    virtual void choiceAsked() {}
};

}  // namespace velmora
