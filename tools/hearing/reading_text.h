#pragma once

#include <string>

#include "agent/hearing/decoder.h"

namespace velmora::hearing {

/// A reading as one field of a table, and back.
std::string readingText(const agent::Reading& reading);
agent::Reading readReading(const std::string& text);

}  // namespace velmora::hearing
