#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/support/child_process.h"
#include "tests/support/scratch_profile.h"
#include "tests/support/x_screen.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using blackbox::ChildProcess;
using blackbox::ScratchProfile;
using blackbox::XScreen;

/// The real program in real windows, on a screen of its own with a window manager.
class Desktop : public testing::Test {
protected:
    static ChildProcess::Clock::time_point soon() { return ChildProcess::Clock::now() + 60s; }

    std::vector<std::string> environment() const {
        auto variables = profile.environment({screen.display()});
        if (const char* options = std::getenv("LSAN_OPTIONS"))
            variables.push_back(std::string("LSAN_OPTIONS=") + options);
        return variables;
    }

    std::unique_ptr<ChildProcess> start(std::vector<std::string> arguments = {}) {
        arguments.insert(arguments.begin(), {VELMORA_PROGRAM, "--no-open", "--folder", profile.folder()});
        return std::make_unique<ChildProcess>(arguments, environment());
    }

    /// Mouse and keys, as xdotool takes them; gives the first line that it prints, if it is asked for one.
    void xdotool(std::vector<std::string> words) {
        words.insert(words.begin(), "xdotool");
        EXPECT_EQ(ChildProcess(words, environment()).waitForEnd(soon()), 0);
    }
    std::string findWindow(std::vector<std::string> words) {
        words.insert(words.begin(), {"xdotool", "search", "--sync", "--onlyvisible"});
        return ChildProcess(words, environment()).readLine(soon());
    }

    ScratchProfile profile;
    XScreen screen{profile};
};

TEST_F(Desktop, CharacterGreetsAndLeavesWhenItsMenuSaysSo) {
    const auto program = start();
    const auto greeting = screen.waitForPopup(soon());
    screen.waitForEndOf(greeting, soon());

    xdotool({"mousemove", "--window", findWindow({"--class", "velmora"}), "100", "130", "click", "3"});
    const auto menu = screen.waitForPopup(soon());
    xdotool({"key", "Up", "Return"});  // the last entry is Exit
    screen.waitForEndOf(menu, soon());
    screen.waitForPopup(soon());  // the farewell
    EXPECT_EQ(program->waitForEnd(soon()), 0);
}

TEST_F(Desktop, EscapeClosesTheMenuAndTheCharacterStays) {
    const auto program = start();
    screen.waitForEndOf(screen.waitForPopup(soon()), soon());
    xdotool({"mousemove", "--window", findWindow({"--class", "velmora"}), "100", "130", "click", "3"});
    const auto menu = screen.waitForPopup(soon());
    xdotool({"key", "Escape"});
    screen.waitForEndOf(menu, soon());
    xdotool({"click", "1"});
    program->letRun(100ms);
}

TEST_F(Desktop, LoginIsWorkedWithTheKeyboardAlone) {
    std::filesystem::remove(profile.folder() / "Velmora.ini");
    const auto program = start();
    findWindow({"--name", "Velmora Login"});
    xdotool({"key", "Tab", "Tab", "space"});  // from the name over the password to the default profile
    screen.waitForPopup(soon());
    std::ifstream settings(profile.folder() / "Velmora.ini");
    const std::string content{std::istreambuf_iterator<char>(settings), {}};
    EXPECT_EQ(content, "[Options]\nDefault=True\n");
}

TEST_F(Desktop, TerminalAndWindowsActOnTheSameProgram) {
    std::filesystem::remove(profile.folder() / "Velmora.ini");
    const auto program = start({"--console", "--windows"});
    program->readUntil("ready", soon());
    findWindow({"--name", "Velmora Login"});
    xdotool({"key", "Escape"});  // Cancel
    program->readUntil("form\tfrmLogin\tunloaded", soon());
    program->readUntil("bye", soon());
    EXPECT_EQ(program->waitForEnd(soon()), 0);
}

TEST_F(Desktop, EverythingSaidIsInTheWaveFile) {
    const auto file = profile.folder() / "said.wav";
    std::ofstream(profile.folder() / "platform.conf") << "[Speech]\nDevice=file:" << file.string() << "\n";
    const auto program = start();
    screen.waitForEndOf(screen.waitForPopup(soon()), soon());
    std::ifstream in(file, std::ios::binary);
    const std::string wave{std::istreambuf_iterator<char>(in), {}};
    ASSERT_GT(wave.size(), 20'000U);  // about half a second of 16 bits at 22,050 Hz
    EXPECT_EQ(wave.substr(0, 4), "RIFF");
    const auto loud = std::count_if(wave.begin() + 44, wave.end(), [](char byte) { return byte != 0; });
    EXPECT_GT(loud, static_cast<std::ptrdiff_t>(wave.size() / 4));
}

}  // namespace
}  // namespace velmora
