#include "hosts/displays.h"

#include <xcb/xcb.h>

#include <QByteArray>

namespace velmora {
namespace {

bool isSet(const char* variable) {
    return !qEnvironmentVariableIsEmpty(variable);
}

bool xServerAnswers() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return answers;
}

}  // namespace

bool hasDisplay() {
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

bool chooseDisplay() {
    if (isSet("QT_QPA_PLATFORM")) return qgetenv("QT_QPA_PLATFORM") != "xcb" || xServerAnswers();
    if (isSet("DISPLAY") && xServerAnswers()) {
        qputenv("QT_QPA_PLATFORM", "xcb");
        return true;
    }
    return isSet("WAYLAND_DISPLAY");
}

}  // namespace velmora
