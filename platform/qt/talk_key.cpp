#include "platform/qt/talk_key.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <QtGui/qguiapplication_platform.h>
#include <QCoreApplication>
#include <QGuiApplication>
#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <vector>

namespace velmora::qt {
namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <class Reply>
using ReplyOf = std::unique_ptr<Reply, Free>;

constexpr std::uint8_t withoutSent = 0x7f;  // the event's type but for the bit of events sent by programs

xcb_connection_t* x11() {
    auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return native != nullptr ? native->connection() : nullptr;
}

std::uint8_t codeOf(xcb_connection_t* connection, xcb_keysym_t wanted) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const int count = setup->max_keycode - setup->min_keycode + 1;
    const ReplyOf<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        connection,
        xcb_get_keyboard_mapping(connection, setup->min_keycode, static_cast<std::uint8_t>(count)), nullptr));
    if (!mapping || mapping->keysyms_per_keycode == 0) return 0;
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const int all = xcb_get_keyboard_mapping_keysyms_length(mapping.get());
    for (int i = 0; i < all; ++i) {
        if (symbols[i] == wanted)
            return static_cast<std::uint8_t>(setup->min_keycode + i / mapping->keysyms_per_keycode);
    }
    return 0;
}

// The modifier that a key stands for; 0 if it is none.
std::uint16_t modifierOf(xcb_connection_t* connection, xcb_keysym_t symbol) {
    const std::uint8_t code = codeOf(connection, symbol);
    const ReplyOf<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    if (!mapping || code == 0) return 0;
    const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(mapping.get());
    const int all = xcb_get_modifier_mapping_keycodes_length(mapping.get());
    for (int i = 0; i < all; ++i) {
        if (codes[i] == code) return static_cast<std::uint16_t>(1U << (i / mapping->keycodes_per_modifier));
    }
    return 0;
}

// Every state in which lights of the keyboard may be on: a grab holds for one exact state only.
std::vector<std::uint16_t> lockStates(xcb_connection_t* connection) {
    std::vector<std::uint16_t> states{0};
    const std::array<std::uint16_t, 3> locks{XCB_MOD_MASK_LOCK, modifierOf(connection, XKB_KEY_Num_Lock),
                                             modifierOf(connection, XKB_KEY_Scroll_Lock)};
    for (const std::uint16_t lock : locks) {
        if (lock == 0) continue;
        const std::size_t without = states.size();
        for (std::size_t i = 0; i < without; ++i)
            states.push_back(static_cast<std::uint16_t>(states[i] | lock));
    }
    return states;
}

xcb_window_t rootOf(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

bool grab(xcb_connection_t* connection, std::uint8_t code, std::uint16_t state) {
    const auto cookie = xcb_grab_key_checked(connection, 0, rootOf(connection), state, code,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    return !ReplyOf<xcb_generic_error_t>(xcb_request_check(connection, cookie));
}

void ungrab(xcb_connection_t* connection, std::uint8_t code) {
    xcb_ungrab_key(connection, code, rootOf(connection), XCB_MOD_MASK_ANY);
    xcb_flush(connection);
}

}  // namespace

TalkKey::TalkKey() {
    constexpr std::chrono::milliseconds longerThanRepeating{25};
    releasing_.setSingleShot(true);
    releasing_.setInterval(longerThanRepeating);
    QObject::connect(&releasing_, &QTimer::timeout, &releasing_, [this] { released(); });
    QCoreApplication::instance()->installNativeEventFilter(this);
}

TalkKey::~TalkKey() {
    if (qGuiApp == nullptr) return;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    letGo();
}

void TalkKey::letGo() {
    if (!works()) return;
    if (xcb_connection_t* connection = x11()) ungrab(connection, code_);
    code_ = 0;
}

std::string TalkKey::use(const std::string& name) {
    letGo();
    released();
    if (name.empty()) return {};
    const std::string refusal = "\"" + name + "\" can't be the key to talk: ";
    xcb_connection_t* connection = x11();
    if (connection == nullptr) return refusal + "this desktop shows no program the keys of others.";
    const xkb_keysym_t symbol = xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    const std::uint8_t code = symbol == XKB_KEY_NoSymbol ? std::uint8_t{0} : codeOf(connection, symbol);
    if (code == 0) return refusal + "this keyboard has no such key.";
    for (const std::uint16_t locks : lockStates(connection)) {
        if (grab(connection, code, locks)) {
            // Without this one, the key still does what it is for.
            grab(connection, code, static_cast<std::uint16_t>(locks | XCB_MOD_MASK_SHIFT));
            continue;
        }
        ungrab(connection, code);
        return refusal + "another program has taken it.";
    }
    code_ = code;
    return {};
}

bool TalkKey::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (!works() || eventType != "xcb_generic_event_t") return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & withoutSent;
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) return false;
    const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event);
    if (key->detail != code_ || key->event != key->root) return false;
    if (type == XCB_KEY_PRESS) {
        pressed(key->time, (key->state & XCB_MOD_MASK_SHIFT) != 0);
    } else {
        releasedAt_ = key->time;
        releasing_.start();
    }
    return true;
}

// A key that is held repeats itself as a release and a press of the same moment.
void TalkKey::pressed(std::uint32_t time, bool shift) {
    if (releasing_.isActive() && time != releasedAt_) released();
    releasing_.stop();
    if (down_) return;
    if (shift) {
        if (onShiftPress) onShiftPress();
        return;
    }
    down_ = true;
    if (onPress) onPress();
}

void TalkKey::released() {
    releasing_.stop();
    if (!down_) return;
    down_ = false;
    if (onRelease) onRelease();
}

}  // namespace velmora::qt
