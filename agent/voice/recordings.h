#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "agent/voice/audio_sink.h"

namespace agent {

class WavFile;

/// The WAV files that the voices of a program speak into. The first line replaces an older file; those that
/// follow go on with it, whichever voice says them, and whatever was spoken into in between. What two voices
/// say at a time stands there one behind the other. Voices may outlive this.
class Recordings {
public:
    /// `report` gets a sentence about each file that can't be written, once, in the thread of a voice.
    explicit Recordings(std::function<void(const std::string& reason)> report = {});

    /// Opens sinks at the end of that file, which is whole after every write; null where it can't be written.
    OpenSink file(const std::string& path);

private:
    std::function<void(const std::string&)> report_;
    std::map<std::string, std::shared_ptr<WavFile>> files_;
};

}  // namespace agent
