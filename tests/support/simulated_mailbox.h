#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/support/simulated_sockets.h"

namespace velmora {

/// A mail server with one mailbox, for whoever calls. What it does can be bent at every step; commands are
/// named as they come, without their line end, and the greeting is the answer to "".
class SimulatedMailbox {
public:
    static constexpr std::uint16_t port = 110;

    /// Stands at that host of the network, for as long as the network is used.
    SimulatedMailbox(SimulatedNetwork& network, const std::string& host, std::vector<std::string> messages);
    SimulatedMailbox(const SimulatedMailbox&) = delete;
    SimulatedMailbox& operator=(const SimulatedMailbox&) = delete;

    /// As they lie in the mailbox, with CRLF line ends.
    std::vector<std::string> messages;

    std::map<std::string, std::string> answers = {};  ///< said, as it stands, in place of the proper answer
    std::set<std::string> silentAt = {};              ///< commands that get no answer
    std::set<std::string> closesAt = {};              ///< commands at which the connection is closed
    std::set<std::string> resetsAt = {};              ///< commands at which the connection breaks

    /// All commands since the last call, over all sessions.
    std::vector<std::string> takeCommands();
    /// The latest connection, to say what no script says.
    ServerEnd& line() { return *network_.serverEnds().back(); }

private:
    void follow(ServerEnd& end, const std::string& command);
    std::string answerTo(const std::string& command) const;

    SimulatedNetwork& network_;
    std::vector<std::string> commands_;
};

/// A message with these headers and this body, as it lies in a mailbox.
std::string mailFrom(const std::string& sender, const std::string& subject, const std::string& id,
                     const std::string& body = "Hello.\r\n");

}  // namespace velmora
