#include <fcntl.h>
#include <unistd.h>

#include <QApplication>
#include <QCoreApplication>
#include <csignal>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "hosts/desktop_host.h"
#include "hosts/displays.h"
#include "hosts/options.h"
#include "hosts/terminal_host.h"
#include "platform/posix/data_folders.h"

namespace {

/// A standard descriptor that came closed would be given to the next file that is opened.
void fillStandardDescriptors() {
    while (true) {
        const int descriptor = open("/dev/null", O_RDWR);
        if (descriptor > STDERR_FILENO) close(descriptor);
        if (descriptor < 0 || descriptor > STDERR_FILENO) return;
    }
}

}  // namespace

int main(int count, char** values) {
    fillStandardDescriptors();
    auto parsed = velmora::parseOptions(std::vector<std::string>(values + 1, values + count));
    if (const auto* usage = std::get_if<velmora::Usage>(&parsed)) {
        (usage->status == 0 ? std::cout : std::cerr) << usage->text;
        return usage->status;
    }
    auto& options = std::get<velmora::Options>(parsed);
    if (!options.console && !velmora::hasDisplay()) {
        std::cerr
            << "velmora: neither DISPLAY nor WAYLAND_DISPLAY is set, starting in the terminal (--console)\n";
        options.console = true;
        options.windows = false;
    }
    const bool windows = !options.console || options.windows;
    const auto display = windows ? velmora::chooseDisplay() : velmora::Display::windowsPlaced;
    if (display == velmora::Display::unreachable) {
        std::cerr << "velmora: the display can't be reached; --console runs in the terminal\n";
        return 1;
    }
    if (display == velmora::Display::waylandAlone) {
        std::cerr << "velmora: Wayland without XWayland: the desktop places the character, which can't move, "
                     "keep on top or hear the key to talk\n";
    }
    const std::string installed = velmora::installedDataFolder();
    const auto folder = velmora::prepareApplicationFolder(options.folder, installed);
    if (!folder) return 1;

    std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone ends nothing half-way
    QCoreApplication::setApplicationName(QStringLiteral("velmora"));
    const velmora::Folders folders{.application = *folder, .installed = installed};
    int qtCount = 1;  // the options are ours, none is Qt's
    if (!windows) {
        const QCoreApplication application(qtCount, values);
        return velmora::runInTerminal(options, folders);
    }
    const QApplication application(qtCount, values);
    return options.console ? velmora::runInTerminal(options, folders)
                           : velmora::runOnDesktop(options, folders);
}
