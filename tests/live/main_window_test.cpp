#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "tests/live/live_desktop.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

/// The program with its icon in a tray, driven by the mouse and asked through its terminal.
class TrayAndWindow : public LiveDesktop {
protected:
    TrayAndWindow() { program->readUntil("ready", soon()); }

    std::string value(const std::string& address) {
        program->write("get " + address + "\n");
        const std::string line = program->readLine(soon());
        program->readUntil("ok", soon());
        return line.substr(line.find('\t') + 1);
    }

    /// Until the control reads so; a click reaches the program in its own time.
    void waitUntil(const std::string& address, const std::string& expected) {
        const auto deadline = soon();
        while (value(address) != expected) {
            ASSERT_LT(ChildProcess::Clock::now(), deadline) << address << " never was " << expected;
        }
    }

    /// The icon takes its place in the tray in its own time.
    void showFromTray() {
        const auto deadline = soon();
        while (value("FrmMain.Visible") != "True") {
            ASSERT_LT(ChildProcess::Clock::now(), deadline) << "the tray icon never answered a click";
            clickOnTrayIcon(1);
        }
    }

    /// The menu that is up, as the terminal names it, or nothing.
    std::string popup() {
        program->write("forms\n");
        std::string found, line;
        while ((line = program->readLine(soon())) != "ok") {
            if (line.starts_with("popup\t")) found = line.substr(6);
        }
        return found;
    }

    /// The tray is in the lower left corner of the screen and as wide as its icons: one, once the program is
    /// there.
    void clickOnTrayIcon(int button) { xdotool({"mousemove", "12", "788", "click", std::to_string(button)}); }

    ChildProcess trayHost{{"trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request"},
                          environment()};
    std::unique_ptr<ChildProcess> program = start({"--console", "--windows"});
};

TEST_F(TrayAndWindow, TrayIconShowsItAndItsButtonsBringUpTheirPanels) {
    showFromTray();
    const std::string window = findWindow({"--name", "^Velmora$"});
    const std::array panels{"FrameSearch", "FrameOpen", "FrameAlarm", "FrameMail"};
    for (const int button : {1, 2, 3, 0}) {
        clickAt(window, 75 + 117 * button, 90);
        waitUntil(std::string(panels.at(static_cast<std::size_t>(button))) + ".Left", "120");
    }
    clickAt(window, 470, 42);  // CmdMin
    waitUntil("FrmMain.Visible", "False");
}

TEST_F(TrayAndWindow, RightClickOnTheTrayIconPopsUpTheMenuThatEscapeCloses) {
    showFromTray();
    const auto deadline = soon();
    clickOnTrayIcon(3);
    while (popup() != "FrmMain.MnuMain") ASSERT_LT(ChildProcess::Clock::now(), deadline);
    while (!popup().empty()) {
        ASSERT_LT(ChildProcess::Clock::now(), deadline) << "the menu does not listen to the keyboard";
        xdotool({"key", "Escape"});
    }
}

}  // namespace
}  // namespace velmora
