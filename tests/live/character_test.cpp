#include <gtest/gtest.h>

#include <fstream>

#include "tests/live/live_desktop.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

class Character : public LiveDesktop {
protected:
    std::string settings() const {
        std::ifstream file(profile.folder() / "platform.conf");
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(Character, StandsAtTheNextStartWhereItWasDragged) {
    auto program = start();
    screen.waitForEndOf(screen.waitForPopup(soon()), soon());
    xdotool({"mousemove", "--window", findWindow({"--class", "velmora"}), "100", "130", "mousedown", "1"});
    xdotool({"mousemove", "310", "310", "mousemove", "300", "300", "mouseup", "1"});
    screen.waitForWindowAt(200, 170, soon());  // as far from the pointer as where it was taken hold of
    xdotool({"click", "3"});
    const auto menu = screen.waitForPopup(soon());
    xdotool({"key", "Up", "Return"});  // the last entry is Exit
    screen.waitForEndOf(menu, soon());
    EXPECT_EQ(program->waitForEnd(soon()), 0);

    program = start();
    screen.waitForEndOf(screen.waitForPopup(soon()), soon());
    xdotool({"mousemove", "300", "300", "click", "3"});
    screen.waitForPopup(soon());  // its menu: it is there
}

TEST_F(Character, IsSetAndChosenByKeyboardAlone) {
    const auto program = start({"--console", "--windows"});
    program->readUntil("ready", soon());
    program->write("menu mnuACo\n");
    program->readUntil("ok", soon());
    xdotool({"windowfocus", "--sync", findWindow({"--name", "^Character Options$"})});
    xdotool({"key", "alt+t"});
    screen.waitForEndOf(screen.waitForPopup(soon()), soon());  // the sample line
    xdotool({"key", "alt+z", "Down", "Down", "Tab", "Tab", "Tab", "space", "Return"});
    program->write("command ChangeAgent\n");
    program->readUntil("choose", soon());
    const auto chooser = findWindow({"--name", "^Choose Character$"});
    EXPECT_NE(settings().find("Size=150"), std::string::npos) << settings();
    EXPECT_NE(settings().find("Idle=False"), std::string::npos) << settings();
    xdotool({"windowfocus", "--sync", chooser, "key", "Right", "Return"});
    program->write("wait 100\nquit\n");
    program->readUntil("bye", soon());
    EXPECT_NE(settings().find("Default=Peedy"), std::string::npos) << settings();
}

}  // namespace
}  // namespace velmora
