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

    ChildProcess trayHost{{"trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request"},
                          environment()};
    std::string tray = findWindow({"--name", "trayer|panel"});
    std::unique_ptr<ChildProcess> program = start({"--console", "--windows"});
};

TEST_F(TrayAndWindow, TrayIconShowsItAndItsButtonsBringUpTheirPanels) {
    const auto deadline = soon();
    while (value("FrmMain.Visible") != "True") {  // the icon takes its place in the tray in its own time
        ASSERT_LT(ChildProcess::Clock::now(), deadline);
        clickAt(tray, 12, 12);
    }
    const std::string window = findWindow({"--name", "^Velmora$"});
    const std::array panels{"FrameSearch", "FrameOpen", "FrameAlarm", "FrameMail"};
    for (const int button : {1, 2, 3, 0}) {
        clickAt(window, 75 + 117 * button, 90);
        waitUntil(std::string(panels.at(static_cast<std::size_t>(button))) + ".Left", "120");
    }
    clickAt(window, 470, 42);  // CmdMin
    waitUntil("FrmMain.Visible", "False");
}

TEST_F(TrayAndWindow, RightClickOnTheTrayIconPopsUpTheMenu) {
    const auto deadline = soon();
    std::string line;
    while (line != "popup\tFrmMain.MnuMain") {
        ASSERT_LT(ChildProcess::Clock::now(), deadline);
        clickAt(tray, 12, 12, 3);
        program->write("forms\n");
        while ((line = program->readLine(soon())) != "ok" && !line.starts_with("popup")) continue;
    }
    screen.waitForPopup(soon());
}

}  // namespace
}  // namespace velmora
