#include "platform/posix/password_prompt.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "platform/posix/file_descriptor.h"

namespace velmora {
namespace {

/// Keeps back the signals that would stop or end the program; they take effect when this goes.
class SignalsHeld {
public:
    SignalsHeld() {
        ::sigemptyset(&held_);
        for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP}) ::sigaddset(&held_, number);
        ::sigprocmask(SIG_BLOCK, &held_, &before_);
        arrival_ = FileDescriptor(::signalfd(-1, &held_, SFD_CLOEXEC | SFD_NONBLOCK));
    }
    SignalsHeld(const SignalsHeld&) = delete;
    SignalsHeld& operator=(const SignalsHeld&) = delete;
    ~SignalsHeld() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }

    /// Readable while a held signal waits. Nobody reads it, so that the signal still acts in the end.
    int arrival() const { return arrival_.number(); }

private:
    sigset_t held_{};
    sigset_t before_{};
    FileDescriptor arrival_;
};

class EchoOff {
public:
    explicit EchoOff(int terminal) : terminal_(terminal), changed_(::tcgetattr(terminal, &before_) == 0) {
        if (!changed_) return;
        auto silent = before_;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(terminal_, TCSAFLUSH, &silent);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;
    ~EchoOff() {
        if (changed_) ::tcsetattr(terminal_, TCSAFLUSH, &before_);
    }

private:
    int terminal_;
    termios before_{};
    bool changed_;
};

void say(int terminal, std::string_view text) {
    while (!text.empty()) {
        const auto count = ::write(terminal, text.data(), text.size());
        if (count < 0 && errno != EINTR) return;
        if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
    }
}

/// Reads up to the line end, which is not part of the answer; nothing at the end of input before any
/// character.
std::optional<std::string> readLine(int input) {
    std::string line;
    for (;;) {
        char character = 0;
        const auto count = ::read(input, &character, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0 && line.empty()) return std::nullopt;
        if (count <= 0 || character == '\n') break;
        line += character;
    }
    if (line.ends_with('\r')) line.pop_back();
    return line;
}

/// What a readable terminal hands over in one go: a line, or what an end-of-input key ended. One call only,
/// as a second one could wait while the signals are held.
std::optional<std::string> takeLine(int terminal) {
    constexpr std::size_t longestTerminalLine = 4096;
    std::array<char, longestTerminalLine> buffer{};
    const auto count = ::read(terminal, buffer.data(), buffer.size());
    if (count <= 0) return std::nullopt;
    std::string line(buffer.data(), static_cast<std::size_t>(count));
    if (line.ends_with('\n')) line.pop_back();
    return line;
}

enum class Wait { answered, signalled };

Wait waitForAnswer(int terminal, int signals) {
    std::array<pollfd, 2> sources{pollfd{signals, POLLIN, 0}, pollfd{terminal, POLLIN, 0}};
    for (;;) {
        if (::poll(sources.data(), sources.size(), -1) < 0) continue;
        if (sources[0].revents != 0) return Wait::signalled;
        if (sources[1].revents != 0) return Wait::answered;
    }
}

std::optional<std::string> askOnce(int terminal, std::string_view question) {
    for (;;) {
        {
            const SignalsHeld signals;
            const EchoOff echo(terminal);
            say(terminal, question);
            const bool answered = waitForAnswer(terminal, signals.arrival()) == Wait::answered;
            auto line = answered ? takeLine(terminal) : std::nullopt;
            say(terminal, "\n");
            if (answered) return line;
        }
        // Whoever comes here was stopped by the signal and goes on: the question is asked anew.
    }
}

}  // namespace

std::optional<std::string> askForPassword(std::string_view question, std::string_view repeatedQuestion) {
    if (::isatty(STDIN_FILENO) == 0) return readLine(STDIN_FILENO);
    const auto terminal = openFile("/dev/tty", O_RDWR | O_NOCTTY);
    if (!terminal) return std::nullopt;
    auto password = askOnce(terminal.number(), question);
    if (!password) return std::nullopt;
    if (askOnce(terminal.number(), repeatedQuestion) != password) {
        say(terminal.number(), "The two passwords differ.\n");
        return std::nullopt;
    }
    return password;
}

}  // namespace velmora
