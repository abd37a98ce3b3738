#pragma once

#include <xcb/xcb.h>

#include <memory>
#include <string>

#include "tests/support/child_process.h"
#include "tests/support/scratch_profile.h"

namespace velmora::blackbox {

/// A virtual screen with a window manager, for one test. Tells when windows appear and vanish.
class XScreen {
public:
    /// Starts Xvfb and openbox and waits until both serve. Throws std::runtime_error or std::system_error.
    explicit XScreen(const ScratchProfile& profile);

    /// What a program on this screen finds in its environment.
    std::string display() const { return "DISPLAY=" + display_; }

    /// Waits until a balloon or a menu of Velmora's is mapped: a window of its class that stands outside the
    /// window manager. Throws std::runtime_error if none is in time.
    xcb_window_t waitForPopup(ChildProcess::Clock::time_point deadline);

    /// Waits until this window is unmapped or destroyed; throws as waitForPopup does.
    void waitForEndOf(xcb_window_t window, ChildProcess::Clock::time_point deadline);

    /// Waits until a window, or its frame, comes to this place, in pixels from the screen's corner; throws as
    /// waitForPopup does.
    void waitForWindowAt(int x, int y, ChildProcess::Clock::time_point deadline);

private:
    struct Free {
        void operator()(void* allocated) const;
    };
    struct Disconnect {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    using Event = std::unique_ptr<xcb_generic_event_t, Free>;

    void connectAndWatch();
    void waitForWindowManager(ChildProcess::Clock::time_point deadline);
    bool isVelmoras(xcb_window_t window);
    Event nextEvent(ChildProcess::Clock::time_point deadline);

    std::unique_ptr<ChildProcess> server_;
    std::unique_ptr<ChildProcess> windowManager_;
    std::unique_ptr<xcb_connection_t, Disconnect> connection_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    std::string display_;
};

}  // namespace velmora::blackbox
