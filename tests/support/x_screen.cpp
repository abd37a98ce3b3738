#include "tests/support/x_screen.h"

#include <poll.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace velmora::blackbox {
namespace {

using namespace std::chrono_literals;

constexpr auto startTime = 20s;

/// The event, if it is of that kind.
template <class Notify>
const Notify* as(const xcb_generic_event_t& event, int kind) {
    return (event.response_type & 0x7f) == kind ? reinterpret_cast<const Notify*>(&event) : nullptr;
}

}  // namespace

void XScreen::Free::operator()(void* allocated) const {
    std::free(allocated);
}

XScreen::XScreen(const ScratchProfile& profile) {
    const auto deadline = ChildProcess::Clock::now() + startTime;
    server_ = std::make_unique<ChildProcess>(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen",
                                                                      "0", "1280x800x24", "-nolisten", "tcp"},
                                             profile.environment());
    display_ = ":" + server_->readLine(deadline);
    connectAndWatch();
    windowManager_ =
        std::make_unique<ChildProcess>(std::vector<std::string>{"openbox"}, profile.environment({display()}));
    waitForWindowManager(deadline);
}

void XScreen::connectAndWatch() {
    connection_.reset(xcb_connect(display_.c_str(), nullptr));
    if (xcb_connection_has_error(connection_.get()) != 0)
        throw std::runtime_error("cannot connect to " + display_);
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data->root;
    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_.get(), root_, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection_.get());
}

void XScreen::waitForWindowManager(ChildProcess::Clock::time_point deadline) {
    constexpr std::string_view name = "_NET_SUPPORTING_WM_CHECK";
    const auto cookie = xcb_intern_atom(connection_.get(), 0, name.size(), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
        xcb_intern_atom_reply(connection_.get(), cookie, nullptr));
    if (!reply) throw std::runtime_error("the screen does not answer");
    for (;;) {
        const auto event = nextEvent(deadline);
        const auto* changed = as<xcb_property_notify_event_t>(*event, XCB_PROPERTY_NOTIFY);
        if (changed && changed->atom == reply->atom) return;
    }
}

xcb_window_t XScreen::waitForPopup(ChildProcess::Clock::time_point deadline) {
    for (;;) {
        const auto event = nextEvent(deadline);
        const auto* mapped = as<xcb_map_notify_event_t>(*event, XCB_MAP_NOTIFY);
        if (mapped && mapped->override_redirect != 0 && isVelmoras(mapped->window)) return mapped->window;
    }
}

void XScreen::waitForEndOf(xcb_window_t window, ChildProcess::Clock::time_point deadline) {
    for (;;) {
        const auto event = nextEvent(deadline);
        const auto* unmapped = as<xcb_unmap_notify_event_t>(*event, XCB_UNMAP_NOTIFY);
        const auto* destroyed = as<xcb_destroy_notify_event_t>(*event, XCB_DESTROY_NOTIFY);
        if ((unmapped && unmapped->window == window) || (destroyed && destroyed->window == window)) return;
    }
}

void XScreen::waitForWindowAt(int x, int y, ChildProcess::Clock::time_point deadline) {
    for (;;) {
        const auto event = nextEvent(deadline);
        const auto* placed = as<xcb_configure_notify_event_t>(*event, XCB_CONFIGURE_NOTIFY);
        if (placed && placed->x == x && placed->y == y) return;
    }
}

bool XScreen::isVelmoras(xcb_window_t window) {
    const auto cookie =
        xcb_get_property(connection_.get(), 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 64);
    const std::unique_ptr<xcb_get_property_reply_t, Free> reply(
        xcb_get_property_reply(connection_.get(), cookie, nullptr));
    if (!reply) return false;
    std::string name(static_cast<const char*>(xcb_get_property_value(reply.get())),
                     static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return name.find("velmora") != std::string::npos;
}

XScreen::Event XScreen::nextEvent(ChildProcess::Clock::time_point deadline) {
    for (;;) {
        if (Event event(xcb_poll_for_event(connection_.get())); event) return event;
        if (xcb_connection_has_error(connection_.get()) != 0) throw std::runtime_error("the screen is gone");
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - ChildProcess::Clock::now());
        if (left <= 0ms) throw std::runtime_error("what was waited for did not happen on the screen in time");
        pollfd waiting{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
        poll(&waiting, 1, static_cast<int>(left.count()));
    }
}

}  // namespace velmora::blackbox
