#include "tests/console/terminal_session.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace velmora {

TerminalSession::TerminalSession(const std::string& folder, std::vector<std::string> arguments) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (pipe2(in.data(), O_CLOEXEC) != 0 || pipe2(out.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    std::vector<std::string> words{VELMORA_PROGRAM, "--console", "--folder", folder};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, in[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    const int failed = posix_spawn(&child_, VELMORA_PROGRAM, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(in[0]);
    close(out[1]);
    toChild_ = in[1];
    fromChild_ = out[0];
    if (failed != 0) throw std::runtime_error("the program does not start");
}

TerminalSession::~TerminalSession() {
    if (toChild_ >= 0) close(toChild_);
    close(fromChild_);
    if (child_ > 0) waitpid(child_, nullptr, 0);
}

std::string TerminalSession::readLine() {
    for (;;) {
        const auto end = buffer_.find('\n');
        if (end != std::string::npos) {
            std::string line = buffer_.substr(0, end);
            buffer_.erase(0, end + 1);
            std::replace(line.begin(), line.end(), '\t', ' ');
            return line;
        }
        std::array<char, 4096> block{};
        const ssize_t count = read(fromChild_, block.data(), block.size());
        if (count <= 0) return {};
        buffer_.append(block.data(), static_cast<std::size_t>(count));
    }
}

std::vector<std::string> TerminalSession::readAnswer() {
    std::vector<std::string> lines;
    for (;;) {
        const std::string line = readLine();
        if (line.empty()) return lines;
        lines.push_back(line);
        if (line == "ready" || line == "ok" || line == "bye" || line.starts_with("error ")) return lines;
    }
}

std::vector<std::string> TerminalSession::send(const std::string& line) {
    const std::string whole = line + "\n";
    if (write(toChild_, whole.data(), whole.size()) != static_cast<ssize_t>(whole.size())) return {};
    return readAnswer();
}

std::vector<std::string> TerminalSession::finishInput() {
    close(toChild_);
    toChild_ = -1;
    std::vector<std::string> lines;
    for (std::string line = readLine(); !line.empty(); line = readLine()) lines.push_back(line);
    return lines;
}

int TerminalSession::exitStatus() {
    int status = 0;
    if (child_ > 0) waitpid(child_, &status, 0);
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

ScratchFolder::ScratchFolder() {
    std::string pattern = std::filesystem::temp_directory_path() / "velmora-test-XXXXXX";
    if (!mkdtemp(pattern.data())) throw std::runtime_error("no scratch folder");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void ScratchFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(file(name), std::ios::binary) << content;
}

std::string ScratchFolder::read(const std::string& name) const {
    std::ifstream in(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace velmora
