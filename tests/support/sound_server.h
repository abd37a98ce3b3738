#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/child_process.h"

namespace velmora::blackbox {

/// A sound server of a test's own, whose microphone hears what is played into its one sink, "room".
class SoundServer {
public:
    /// Starts it and waits for it. Throws std::runtime_error if it is not there in time.
    SoundServer(const std::vector<std::string>& environment, ChildProcess::Clock::time_point deadline);

private:
    ChildProcess server_;
    std::optional<ChildProcess> listener_;
};

}  // namespace velmora::blackbox
