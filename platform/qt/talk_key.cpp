#include "platform/qt/talk_key.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <QtGui/qguiapplication_platform.h>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QTimer>
#include <cstdlib>
#include <memory>

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

xcb_window_t rootOf(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

}  // namespace

TalkKey::TalkKey(const std::string& name) {
    xcb_connection_t* connection = x11();
    const xkb_keysym_t symbol = xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_CASE_INSENSITIVE);
    if (connection == nullptr || symbol == XKB_KEY_NoSymbol) return;
    const std::uint8_t code = codeOf(connection, symbol);
    if (code == 0) return;
    const auto cookie = xcb_grab_key_checked(connection, 1, rootOf(connection), XCB_MOD_MASK_ANY, code,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const ReplyOf<xcb_generic_error_t> taken(xcb_request_check(connection, cookie));
    if (taken) return;
    code_ = code;
    QCoreApplication::instance()->installNativeEventFilter(this);
}

TalkKey::~TalkKey() {
    if (!works() || qGuiApp == nullptr) return;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    if (xcb_connection_t* connection = x11()) {
        xcb_ungrab_key(connection, code_, rootOf(connection), XCB_MOD_MASK_ANY);
        xcb_flush(connection);
    }
}

bool TalkKey::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t") return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & withoutSent;
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) return false;
    const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event);
    if (key->detail != code_) return false;
    if (type == XCB_KEY_PRESS) {
        // A key that is held repeats itself as a release and a press of the same moment.
        repeating_ = down_ && key->time == releasedAt_;
        if (!down_ && onPress) onPress();
        down_ = true;
    } else {
        releasedAt_ = key->time;
        repeating_ = false;
        QTimer::singleShot(0, QCoreApplication::instance(), [this] { released(); });
    }
    return true;
}

void TalkKey::released() {
    if (!down_ || repeating_) return;
    down_ = false;
    if (onRelease) onRelease();
}

}  // namespace velmora::qt
