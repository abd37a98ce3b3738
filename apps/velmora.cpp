#include <QApplication>
#include <QCoreApplication>
#include <csignal>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "hosts/data_folders.h"
#include "hosts/desktop_host.h"
#include "hosts/options.h"
#include "hosts/terminal_host.h"

namespace {

bool hasDisplay() {
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

/// A figure that stands above all windows at a place of its own is more than a Wayland desktop grants; where
/// it offers an X server too, that one can do it.
void preferXServer() {
    if (qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
}

}  // namespace

int main(int count, char** values) {
    auto parsed = velmora::parseOptions(std::vector<std::string>(values + 1, values + count));
    if (const auto* usage = std::get_if<velmora::Usage>(&parsed)) {
        (usage->status == 0 ? std::cout : std::cerr) << usage->text;
        return usage->status;
    }
    auto& options = std::get<velmora::Options>(parsed);
    if (!options.console && !hasDisplay() && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        std::cerr
            << "velmora: neither DISPLAY nor WAYLAND_DISPLAY is set, starting in the terminal (--console)\n";
        options.console = true;
    }
    const std::string installed = velmora::installedDataFolder();
    const auto folder = velmora::prepareApplicationFolder(options.folder, installed);
    if (!folder) return 1;

    std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone ends nothing half-way
    QCoreApplication::setApplicationName(QStringLiteral("velmora"));
    const velmora::Folders folders{.application = *folder, .installed = installed};
    int qtCount = 1;  // the options are ours, none is Qt's
    if (options.console && !options.windows) {
        const QCoreApplication application(qtCount, values);
        return velmora::runInTerminal(options, folders);
    }
    preferXServer();
    const QApplication application(qtCount, values);
    return options.console ? velmora::runInTerminal(options, folders)
                           : velmora::runOnDesktop(options, folders);
}
