#include "tests/support/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace velmora::blackbox {
namespace {

using namespace std::chrono_literals;

std::array<int, 2> openPipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
    return ends;
}

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const auto& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

bool readableBy(int descriptor, ChildProcess::Clock::time_point deadline) {
    pollfd waiting{descriptor, POLLIN, 0};
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - ChildProcess::Clock::now()).count();
        const int ready = poll(&waiting, 1, static_cast<int>(std::max<long>(left, 0)));
        if (ready > 0) return true;
        if (ready == 0) return false;
        if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "poll");
    }
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::vector<std::string>& environment)
    : name_(command.at(0)) {
    const auto input = openPipe();
    const auto output = openPipe();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    const int failure = posix_spawnp(&pid_, command[0].c_str(), &actions, nullptr, pointersTo(command).data(),
                                     pointersTo(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = output[0];
    if (failure != 0) {
        close(input_);
        close(output_);
        throw std::system_error(failure, std::generic_category(), name_);
    }
    handle_ = static_cast<int>(syscall(SYS_pidfd_open, pid_, 0));
    if (handle_ < 0) {
        const int reason = errno;
        stop();
        throw std::system_error(reason, std::generic_category(), "pidfd_open");
    }
}

ChildProcess::~ChildProcess() {
    stop();
}

void ChildProcess::stop() {
    closeInput();
    close(output_);
    if (!collected_) {
        kill(pid_, SIGTERM);
        if (handle_ < 0 || !endedBy(Clock::now() + 2s)) kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    if (handle_ >= 0) close(handle_);
}

std::string ChildProcess::readLine(Clock::time_point deadline) {
    for (;;) {
        if (const auto end = buffer_.find('\n'); end != std::string::npos) {
            auto line = buffer_.substr(0, end);
            buffer_.erase(0, end + 1);
            return line;
        }
        if (!readableBy(output_, deadline)) throw std::runtime_error(name_ + " printed nothing in time");
        std::array<char, 4096> part{};
        const auto count = read(output_, part.data(), part.size());
        if (count <= 0) throw OutputEnded(name_ + " closed its output");
        buffer_.append(part.data(), static_cast<std::size_t>(count));
    }
}

void ChildProcess::readUntil(std::string_view expected, Clock::time_point deadline) {
    while (readLine(deadline) != expected) continue;
}

void ChildProcess::write(std::string_view text) {
    while (!text.empty()) {
        const auto count = ::write(input_, text.data(), text.size());
        if (count < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category(), name_);
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

void ChildProcess::closeInput() {
    if (input_ >= 0) close(input_);
    input_ = -1;
}

int ChildProcess::waitForEnd(Clock::time_point deadline) {
    if (!endedBy(deadline)) throw std::runtime_error(name_ + " did not end in time");
    int status = 0;
    waitpid(pid_, &status, 0);
    collected_ = true;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void ChildProcess::letRun(std::chrono::milliseconds span) {
    if (endedBy(Clock::now() + span)) throw std::runtime_error(name_ + " has ended");
}

double ChildProcess::residentMegabytes() const {
    std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:")) return std::stod(line.substr(6)) * 1024 / 1e6;
    }
    throw std::runtime_error(name_ + " has ended");
}

std::chrono::duration<double> ChildProcess::processorTime() const {
    std::ifstream file("/proc/" + std::to_string(pid_) + "/stat");
    std::string content;
    std::getline(file, content);
    // The second field, the name in brackets, may hold blanks itself.
    const auto nameEnd = content.rfind(')');
    if (nameEnd == std::string::npos) throw std::runtime_error(name_ + " has ended");
    std::istringstream fields(content.substr(nameEnd + 1));
    std::string passedOver;
    for (int field = 3; field < 14; ++field) fields >> passedOver;
    double user = 0;
    double system = 0;
    fields >> user >> system;
    return std::chrono::duration<double>((user + system) / static_cast<double>(sysconf(_SC_CLK_TCK)));
}

bool ChildProcess::endedBy(Clock::time_point deadline) {
    return handle_ >= 0 && readableBy(handle_, deadline);
}

}  // namespace velmora::blackbox
