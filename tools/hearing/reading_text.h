#pragma once

#include <optional>
#include <string>

#include "agent/hearing/decoder.h"
#include "agent/hearing/transcriber.h"

namespace velmora::hearing {

/// A reading as one field of a table, and back.
std::string readingText(const agent::Reading& reading);
agent::Reading readReading(const std::string& text);

/// A transcript likewise.
std::string transcriptText(const std::optional<agent::Transcript>& transcript);
std::optional<agent::Transcript> readTranscript(const std::string& text);

}  // namespace velmora::hearing
