#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/scratch_folder.h"

namespace velmora {

/// The real program in its terminal host, with a folder of its own, driven through pipes, in the region
/// en-US. What does not come within a generous time is an exception.
class TerminalSession {
public:
    /// `arguments` follow `--console --folder FOLDER`.
    explicit TerminalSession(const std::string& folder, const std::vector<std::string>& arguments = {});

    /// The lines, TABs as blanks, up to and including the first that is `ready`, `ok`, `bye` or begins with
    /// `error`, or up to the end of output.
    std::vector<std::string> readAnswer();
    /// Writes the line and reads its answer.
    std::vector<std::string> send(const std::string& line);
    /// Closes the input and reads to the end of output.
    std::vector<std::string> finishInput();

    /// Waits for the end; the exit status, or -1 if a signal ended it.
    int exitStatus() { return program_.waitForEnd(deadline()); }

private:
    static blackbox::ChildProcess::Clock::time_point deadline();
    std::optional<std::string> readLine();

    blackbox::ChildProcess program_;
};

}  // namespace velmora
