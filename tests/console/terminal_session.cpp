#include "tests/console/terminal_session.h"

#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace velmora {
namespace {

using namespace std::chrono_literals;

std::vector<std::string> commandFor(const std::string& folder, const std::vector<std::string>& arguments) {
    std::vector<std::string> words{VELMORA_PROGRAM, "--console", "--folder", folder};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

/// This process's, in a region that writes dates and times the same way on every machine.
std::vector<std::string> americanEnvironment() {
    std::vector<std::string> variables{"LC_ALL=en_US.UTF-8"};
    for (char** variable = environ; *variable; ++variable) {
        if (!std::string_view(*variable).starts_with("LC_ALL=")) variables.emplace_back(*variable);
    }
    return variables;
}

}  // namespace

TerminalSession::TerminalSession(const std::string& folder, const std::vector<std::string>& arguments)
    : program_(commandFor(folder, arguments), americanEnvironment()) {}

blackbox::ChildProcess::Clock::time_point TerminalSession::deadline() {
    return blackbox::ChildProcess::Clock::now() + 60s;
}

std::optional<std::string> TerminalSession::readLine() {
    std::string line;
    try {
        line = program_.readLine(deadline());
    } catch (const blackbox::OutputEnded&) {
        return {};
    }
    std::replace(line.begin(), line.end(), '\t', ' ');
    return line;
}

std::vector<std::string> TerminalSession::readAnswer() {
    std::vector<std::string> lines;
    while (const auto line = readLine()) {
        lines.push_back(*line);
        if (line == "ready" || line == "ok" || line == "bye" || line->starts_with("error ")) break;
    }
    return lines;
}

std::vector<std::string> TerminalSession::send(const std::string& line) {
    program_.write(line + "\n");
    return readAnswer();
}

std::vector<std::string> TerminalSession::finishInput() {
    program_.closeInput();
    std::vector<std::string> lines;
    while (const auto line = readLine()) lines.push_back(*line);
    return lines;
}

}  // namespace velmora
