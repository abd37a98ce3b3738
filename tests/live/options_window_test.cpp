#include <gtest/gtest.h>

#include "tests/live/live_desktop.h"

namespace velmora {
namespace {

using OptionsWindow = LiveDesktop;

TEST_F(OptionsWindow, MailPageIsFilledAndSavedByKeyboardAlone) {
    const auto program = start({"--console", "--windows"});
    program->readUntil("ready", soon());
    program->write("menu mnuOptionsMail\n");
    program->readUntil("ok", soon());
    const std::string window = findWindow({"--name", "^Options$"});
    xdotool({"windowfocus", "--sync", window});
    xdotool({"key", "alt+v"});
    xdotool({"type", "mail.example"});
    xdotool({"key", "alt+k"});
    xdotool({"type", "0"});
    xdotool({"key", "alt+s"});
    program->readUntil("box\tVelmora\tMail Checking OFF\tnone\tok", soon());
    program->write("get TxtServer\n");
    EXPECT_EQ(program->readLine(soon()), "value\tmail.example");
    xdotool({"windowfocus", "--sync", window});
    xdotool({"key", "Escape"});
    program->readUntil("form\tFrmOptions\tunloaded", soon());
}

}  // namespace
}  // namespace velmora
