#include "hosts/displays.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <algorithm>

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

bool waylandAnswers() {
    const QDir runtime(QString::fromLocal8Bit(qgetenv("XDG_RUNTIME_DIR")));
    const QByteArray name = isSet("WAYLAND_DISPLAY") ? qgetenv("WAYLAND_DISPLAY") : "wayland-0";
    const QByteArray path = QFile::encodeName(runtime.filePath(QString::fromLocal8Bit(name)));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof address.sun_path)) return false;
    std::ranges::copy(path, address.sun_path);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool answers =
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(descriptor);
    return answers;
}

// Where either is not there, Qt would end the program.
bool waylandServes() {
    const QDir platforms(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    return !platforms.entryList({QStringLiteral("libqwayland*")}).isEmpty() && waylandAnswers();
}

Display chosenByUser(const QByteArray& platform) {
    if (platform.startsWith("wayland")) return waylandServes() ? Display::waylandAlone : Display::unreachable;
    return platform != "xcb" || xServerAnswers() ? Display::windowsPlaced : Display::unreachable;
}

}  // namespace

bool hasDisplay() {
    return isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM");
}

Display chooseDisplay() {
    if (isSet("QT_QPA_PLATFORM")) return chosenByUser(qgetenv("QT_QPA_PLATFORM"));
    const bool hasX = isSet("DISPLAY") && xServerAnswers();
    if (!hasX && !(isSet("WAYLAND_DISPLAY") && waylandServes())) return Display::unreachable;
    qputenv("QT_QPA_PLATFORM", hasX ? "xcb" : "wayland");
    return hasX ? Display::windowsPlaced : Display::waylandAlone;
}

}  // namespace velmora
