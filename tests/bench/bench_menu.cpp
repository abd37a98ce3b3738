// How soon the character's menu is up after a right click.

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <chrono>

#include "tests/bench/benchmark.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_profile.h"
#include "tests/support/x_screen.h"

namespace {

using namespace std::chrono_literals;
using namespace velmora::bench;
using namespace velmora::blackbox;
using Clock = ChildProcess::Clock;

constexpr int runs = 15;

/// The mouse and a key of a screen, without a process in between.
class Hands {
public:
    explicit Hands(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {}
    ~Hands() { xcb_disconnect(connection_); }
    Hands(const Hands&) = delete;
    Hands& operator=(const Hands&) = delete;

    void moveTo(std::int16_t x, std::int16_t y) { send(XCB_MOTION_NOTIFY, 0, x, y); }
    void rightClick() {
        constexpr std::uint8_t right = 3;
        send(XCB_BUTTON_PRESS, right, 0, 0);
        send(XCB_BUTTON_RELEASE, right, 0, 0);
    }
    void escape() {
        constexpr std::uint8_t escapeKey = 9;
        send(XCB_KEY_PRESS, escapeKey, 0, 0);
        send(XCB_KEY_RELEASE, escapeKey, 0, 0);
    }

private:
    void send(std::uint8_t type, std::uint8_t detail, std::int16_t x, std::int16_t y) {
        xcb_test_fake_input(connection_, type, detail, XCB_CURRENT_TIME, XCB_NONE, x, y, 0);
        xcb_flush(connection_);
    }
    xcb_connection_t* connection_;
};

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path& build) {
    const ScratchProfile profile;
    XScreen screen(profile);
    ChildProcess program({build / "apps/velmora", "--no-open", "--folder", profile.folder()},
                         profile.environment({screen.display(), "QT_QPA_PLATFORM=xcb"}));
    screen.waitForEndOf(screen.waitForPopup(Clock::now() + 30s), Clock::now() + 60s);
    ChildProcess search(
        {"xdotool", "search", "--onlyvisible", "--class", "velmora", "getwindowgeometry", "--shell"},
        profile.environment({screen.display()}));
    int x = 0;
    int y = 0;
    for (int line = 0; line < 5; ++line) {
        const std::string text = search.readLine(Clock::now() + 30s);
        if (text.starts_with("X=")) x = std::stoi(text.substr(2));
        if (text.starts_with("Y=")) y = std::stoi(text.substr(2));
    }

    Hands hands(screen.display().substr(screen.display().find('=') + 1));
    constexpr int figureX = 100;
    constexpr int figureY = 130;
    hands.moveTo(static_cast<std::int16_t>(x + figureX), static_cast<std::int16_t>(y + figureY));
    std::vector<double> milliseconds;
    for (int run = 0; run < runs; ++run) {
        program.letRun(300ms);
        const auto start = Clock::now();
        hands.rightClick();
        const auto popup = screen.waitForPopup(start + 30s);
        milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        program.letRun(100ms);  // until the menu has the keyboard
        hands.escape();
        screen.waitForEndOf(popup, Clock::now() + 30s);
    }
    report("right click on the character until its menu is up", median(milliseconds), "ms",
           "median of " + std::to_string(runs));
}
