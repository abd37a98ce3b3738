#pragma once

#include <sys/types.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::blackbox {

/// The program has closed its output.
struct OutputEnded : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A program started by a test, with pipes to its standard input and output. Its end is this object's
/// end: the destructor closes the pipes, ends a process that still runs (SIGTERM, after two seconds SIGKILL),
/// and collects it.
class ChildProcess {
public:
    using Clock = std::chrono::steady_clock;

    /// Starts `command` (the program is looked for in PATH) with exactly these NAME=value pairs. Throws
    /// std::system_error if it cannot be started.
    ChildProcess(const std::vector<std::string>& command, const std::vector<std::string>& environment);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t pid() const { return pid_; }

    /// Reads the next line of output, without its line end. Throws std::runtime_error if none comes in time,
    /// or the output has ended.
    std::string readLine(Clock::time_point deadline);

    /// Reads lines up to and with `expected`; throws as readLine does.
    void readUntil(std::string_view expected, Clock::time_point deadline);

    /// Hands the text to the program's standard input, which must take it at once or soon. Throws
    /// std::system_error.
    void write(std::string_view text);

    /// Lets the program see the end of its input.
    void closeInput();

    /// Waits until the program ends by itself; gives its exit status, or -1 if a signal ended it. Throws
    /// std::runtime_error if it does not in time.
    int waitForEnd(Clock::time_point deadline);

    /// Leaves the process alone for this long. Throws std::runtime_error if it ends meanwhile.
    void letRun(std::chrono::milliseconds span);

    /// What the process holds in memory now, in megabytes of 1,000,000 bytes.
    double residentMegabytes() const;

    /// The processor time it has used up to now, to the clock tick (10 ms).
    std::chrono::duration<double> processorTime() const;

private:
    void stop();
    bool endedBy(Clock::time_point deadline);

    std::string name_;
    std::string buffer_;
    pid_t pid_ = -1;
    int input_ = -1;
    int output_ = -1;
    int handle_ = -1;
    bool collected_ = false;
};

}  // namespace velmora::blackbox
