#include "tests/support/simulated_mailbox.h"

#include <charconv>
#include <numeric>
#include <string_view>
#include <utility>

namespace velmora {
namespace {

/// The number behind "RETR ", 0 for another command.
std::size_t wantedMessage(std::string_view command) {
    constexpr std::string_view verb = "RETR ";
    std::size_t number = 0;
    if (command.starts_with(verb))
        std::from_chars(command.data() + verb.size(), command.data() + command.size(), number);
    return number;
}

}  // namespace

SimulatedMailbox::SimulatedMailbox(SimulatedNetwork& network, const std::string& host,
                                   std::vector<std::string> messages_)
    : messages(std::move(messages_)), network_(network) {
    network.serve(host, port,
                  {.onConnect = [this](ServerEnd& end) { follow(end, ""); },
                   .onData =
                       [this](ServerEnd& end, const std::string& data) {
                           const std::string command = data.substr(0, data.find("\r\n"));
                           commands_.push_back(command);
                           follow(end, command);
                       }});
}

void SimulatedMailbox::follow(ServerEnd& end, const std::string& command) {
    if (resetsAt.contains(command)) return end.reset();
    if (closesAt.contains(command)) return end.close();
    if (!silentAt.contains(command)) end.send(answerTo(command));
}

std::string SimulatedMailbox::answerTo(const std::string& command) const {
    if (const auto answer = answers.find(command); answer != answers.end()) return answer->second;
    if (command == "STAT") {
        const auto octets =
            std::accumulate(messages.begin(), messages.end(), std::size_t{0},
                            [](std::size_t sum, const std::string& message) { return sum + message.size(); });
        return "+OK " + std::to_string(messages.size()) + " " + std::to_string(octets) + "\r\n";
    }
    if (!command.starts_with("RETR")) return "+OK\r\n";
    const std::size_t number = wantedMessage(command);
    if (number == 0 || number > messages.size()) return "-ERR no such message\r\n";
    const std::string& message = messages[number - 1];
    return "+OK " + std::to_string(message.size()) + " octets\r\n" + message + ".\r\n";
}

std::vector<std::string> SimulatedMailbox::takeCommands() {
    return std::exchange(commands_, {});
}

std::string mailFrom(const std::string& sender, const std::string& subject, const std::string& id,
                     const std::string& body) {
    std::string message = "From: " + sender + "\r\nSubject: " + subject + "\r\n";
    if (!id.empty()) message.append("Message-ID: <").append(id).append(">\r\n");
    return message.append("\r\n").append(body);
}

}  // namespace velmora
