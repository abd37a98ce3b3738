#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/conversions.h"
#include "platform/ini_settings_file.h"
#include "tests/support/in_memory_files.h"
#include "tests/support/simulated_inets.h"
#include "tests/support/simulated_link.h"
#include "tests/support/simulated_mailbox.h"
#include "tests/support/simulated_sockets.h"

namespace velmora {

class SimulatedProgram;

/// A whole machine in memory: one clock, one file system, and programs that run on it, each on a stack of its
/// own (a thread that holds the baton; one runs at a time). Time stands still but for `advance`.
class SimulatedMachine {
public:
    SimulatedMachine();
    /// Ends all programs, as a power cut would.
    ~SimulatedMachine();

    InMemoryFiles files;
    SimulatedNetwork network;

    /// What every program on this machine finds on the web, and the machine's way there, which is up.
    SimulatedWeb web;
    SimulatedLink link;

    /// Sets a key of a settings file in the folder, before a program starts.
    void setting(const std::string& folder, std::string_view section, std::string_view key,
                 std::string_view value, const std::string& file = "Velmora.ini");
    /// Writes the user list of the folder.
    void users(const std::string& folder, const std::vector<std::string>& entries);

    /// A mail server at that host, with these messages.
    SimulatedMailbox& pop3(const std::string& host, std::vector<std::string> messages = {});

    /// The local time at which the machine's clock starts: 2026-03-05 09:05:00 if not set.
    DateTime startsAt{std::chrono::year{2026} / 3 / 5, std::chrono::hours(9) + std::chrono::minutes(5)};

    /// What the next program that starts finds as its character; an empty name: there is none to load.
    std::string character = "Merlin";

    /// Starts a program with the folder /home and its default profile, of that user; empty: not known yet.
    SimulatedProgram& startFor(std::string_view user);
    /// Starts a program with this application folder and runs it until nothing is due.
    SimulatedProgram& start(const std::string& folder);

    /// Runs all programs until nothing is due in any.
    void settle();
    /// Lets time pass: what falls due in the span runs at its moment, in order.
    void advance(std::chrono::milliseconds span);

    std::chrono::milliseconds now() const { return now_; }

private:
    friend class SimulatedProgram;

    bool lockFolder(const std::string& folder, const SimulatedProgram& program);
    void unlockFolder(const SimulatedProgram& program);

    std::chrono::milliseconds now_{0};
    std::map<std::string, const SimulatedProgram*> locks_;  ///< by folder: the running copy
    std::vector<std::unique_ptr<SimulatedMailbox>> mailboxes_;
    std::vector<std::unique_ptr<SimulatedProgram>> programs_;
};

}  // namespace velmora
