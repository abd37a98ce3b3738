#include <QCoreApplication>
#include <csignal>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "hosts/data_folders.h"
#include "hosts/options.h"
#include "hosts/terminal_host.h"

int main(int count, char** values) {
    const auto parsed = velmora::parseOptions(std::vector<std::string>(values + 1, values + count));
    if (const auto* usage = std::get_if<velmora::Usage>(&parsed)) {
        (usage->status == 0 ? std::cout : std::cerr) << usage->text;
        return usage->status;
    }
    const auto& options = std::get<velmora::Options>(parsed);
    const std::string installed = velmora::installedDataFolder();
    const auto folder = velmora::prepareApplicationFolder(options.folder, installed);
    if (!folder) return 1;

    std::signal(SIGPIPE, SIG_IGN);  // a reader that has gone ends nothing half-way
    const QCoreApplication application(count, values);
    return velmora::runInTerminal(options, {.application = *folder, .installed = installed});
}
