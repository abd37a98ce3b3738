// How long it takes to read one key of a large settings file; the file is read anew for every value.

#include <chrono>
#include <stdexcept>
#include <string>

#include "platform/ini_settings_file.h"
#include "platform/posix/posix_files.h"
#include "tests/bench/benchmark.h"
#include "tests/support/scratch_profile.h"

namespace {

using namespace velmora::bench;

constexpr int sections = 20;
constexpr int keysPerSection = 50;
constexpr int runs = 1001;

std::string settingsContent() {
    std::string content;
    for (int section = 0; section < sections; ++section) {
        content += "[Section" + std::to_string(section) + "]\r\n";
        for (int key = 0; key < keysPerSection; ++key)
            content += "Key" + std::to_string(key) + "=value " + std::to_string(section * key) + "\r\n";
    }
    return content;
}

}  // namespace

void velmora::bench::benchmark(const std::filesystem::path&) {
    const velmora::blackbox::ScratchProfile profile;
    velmora::PosixFiles files;
    velmora::IniSettingsFile settings(files);
    const std::string file = profile.folder() / "Large.ini";
    files.replace(file, settingsContent(), velmora::Privacy::ownersOnly);

    std::vector<double> microseconds;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        const auto value = settings.read("Section19", "Key49", "", file);
        const std::chrono::duration<double, std::micro> taken = std::chrono::steady_clock::now() - start;
        if (value != "value 931") throw std::runtime_error("the last key read as '" + value + "'");
        microseconds.push_back(taken.count());
    }
    report("last key of a 1,000-key settings file", median(microseconds), "us",
           "median of " + std::to_string(runs));
}
