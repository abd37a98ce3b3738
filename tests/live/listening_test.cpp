#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "tests/live/live_desktop.h"
#include "tests/support/sound_server.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;
using blackbox::OutputEnded;

class DesktopListening : public LiveDesktop {
protected:
    DesktopListening() {
        std::ofstream(profile.folder() / "platform.conf")
            << "[Speech]\nDevice=none\n[Hearing]\nKey=F9\n[Character]\nIdle=False\n";
        run({"espeak-ng", "-v", "en-us+m3", "-s", "140", "-w", wave(), "open calculator"});
    }

    void startSound() { server_.emplace(environment(), soon()); }
    void endSound() { server_.reset(); }

    void run(const std::vector<std::string>& words) const {
        EXPECT_EQ(ChildProcess(words, environment()).waitForEnd(soon()), 0) << words.front();
    }
    void sayIntoTheRoom() const { run({"paplay", "--device=room", wave()}); }

    /// Starts the program, and waits until its first line has been said.
    std::unique_ptr<ChildProcess> startAndBeGreeted() {
        auto program = start();
        screen.waitForEndOf(screen.waitForPopup(soon()), soon());
        return program;
    }

    std::string findTip(const std::string& text) { return findWindow({"--name", "^" + text}); }

    /// Holds the key down, through a few of its repetitions, and says the command.
    void holdKeyAndSpeak(ChildProcess& program) {
        xdotool({"keydown", "F9"});
        findTip("Listening");
        program.letRun(1s);
        sayIntoTheRoom();
        xdotool({"keyup", "F9"});
    }

    /// Whether the command is carried out; what a busy machine's sound server garbles is not understood.
    static bool opensCalculator(ChildProcess& program) {
        try {
            return program.readLine(ChildProcess::Clock::now() + 8s).starts_with("open\tcalculator");
        } catch (const OutputEnded&) {
            throw;
        } catch (const std::runtime_error&) {
            return false;
        }
    }

    void doubleClickFigure() {
        xdotool({"mousemove", "--window", findWindow({"--name", "^Merlin$"}), "100", "130", "click",
                 "--repeat", "2", "--delay", "50", "1"});
    }

private:
    std::string wave() const { return profile.folder() / "said.wav"; }

    std::optional<blackbox::SoundServer> server_;
};

TEST_F(DesktopListening, AKeyHeldDownHearsACommandThroughLocksAndItsOwnRepetition) {
    startSound();
    const auto program = startAndBeGreeted();
    xdotool({"key", "Num_Lock", "key", "Caps_Lock"});
    constexpr int attempts = 4;
    bool opened = false;
    for (int i = 0; i < attempts && !opened; ++i) {
        holdKeyAndSpeak(*program);
        opened = opensCalculator(*program);
    }
    EXPECT_TRUE(opened);
}

TEST_F(DesktopListening, ALostMicrophoneEndsItAndTheNextListenWorksAsSoonAsThereIsOne) {
    const auto program = startAndBeGreeted();
    doubleClickFigure();
    findTip("There is no microphone");
    startSound();
    doubleClickFigure();
    findTip("Listening");
    endSound();
    findTip("The microphone is gone");
    startSound();
    doubleClickFigure();
    findTip("Listening");
}

}  // namespace
}  // namespace velmora
