#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "tests/live/live_desktop.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

/// A sound server of the test's own, whose microphone hears what is played into the sink "room".
class Listening : public LiveDesktop {
protected:
    Listening() {
        std::ofstream(profile.folder() / "platform.conf")
            << "[Speech]\nDevice=none\n[Hearing]\nKey=F9\n[Character]\nIdle=False\n";
        run({"espeak-ng", "-v", "en-us+m3", "-s", "140", "-w", wave(), "open messenger"});
    }

    void startSound() {
        sound_.emplace(std::vector<std::string>{"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1",
                                                "--use-pid-file=no", "--disable-shm", "-L",
                                                "module-native-protocol-unix", "-L",
                                                "module-null-sink sink_name=room"},
                       environment());
        const auto deadline = soon();
        while (ChildProcess({"pactl", "set-default-source", "room.monitor"}, environment()).waitForEnd(deadline) != 0)
            sound_->letRun(50ms);
    }
    void endSound() { sound_.reset(); }

    void run(const std::vector<std::string>& words) const {
        EXPECT_EQ(ChildProcess(words, environment()).waitForEnd(soon()), 0) << words.front();
    }
    void sayIntoTheRoom() const { run({"paplay", "--device=room", wave()}); }

    /// Starts the program, and waits until the greeting is over.
    std::unique_ptr<ChildProcess> startQuietly() {
        auto program = start();
        screen.waitForEndOf(screen.waitForPopup(soon()), soon());
        return program;
    }
    std::string findTip() { return findWindow({"--name", "^What was heard$"}); }
    xcb_window_t numberOf(const std::string& window) { return static_cast<xcb_window_t>(std::stoul(window)); }

private:
    std::string wave() const { return profile.folder() / "said.wav"; }

    std::optional<ChildProcess> sound_;
};

TEST_F(Listening, AKeyHeldDownHearsOneCommandThroughLocksAndRepetition) {
    startSound();
    const auto program = startQuietly();
    xdotool({"key", "Num_Lock", "key", "Caps_Lock", "keydown", "F9"});
    findTip();
    sayIntoTheRoom();
    xdotool({"keyup", "F9"});
    findWindow({"--name", "^Velmora Messenger"});
    EXPECT_EQ(ChildProcess({"xdotool", "getactivewindow", "getwindowname"}, environment()).readLine(soon()).find("What"),
              std::string::npos);
}

}  // namespace
}  // namespace velmora
