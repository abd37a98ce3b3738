#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/live/live_desktop.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

using Desktop = LiveDesktop;

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

TEST_F(Desktop, ADisplayThatCannotBeReachedIsAStatusAndNoCrash) {
    for (const auto& variables : std::vector<std::vector<std::string>>{
             {"WAYLAND_DISPLAY=nowhere"},
             {"QT_QPA_PLATFORM=wayland"},
             {"DISPLAY=:64999", "WAYLAND_DISPLAY=" + std::string(200, 'x')}}) {
        auto environment = profile.environment(variables);
        if (const char* options = std::getenv("LSAN_OPTIONS"))
            environment.push_back(std::string("LSAN_OPTIONS=") + options);
        ChildProcess program({VELMORA_PROGRAM, "--folder", profile.folder()}, environment);
        EXPECT_EQ(program.waitForEnd(soon()), 1) << variables.front();
    }
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
