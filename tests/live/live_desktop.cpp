#include "tests/live/live_desktop.h"

#include <cstdlib>

namespace velmora {

using namespace std::chrono_literals;

blackbox::ChildProcess::Clock::time_point LiveDesktop::soon() {
    return ChildProcess::Clock::now() + 60s;
}

std::vector<std::string> LiveDesktop::environment() const {
    auto variables = profile.environment({screen.display()});
    if (const char* options = std::getenv("LSAN_OPTIONS"))
        variables.push_back(std::string("LSAN_OPTIONS=") + options);
    return variables;
}

std::unique_ptr<blackbox::ChildProcess> LiveDesktop::start(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {VELMORA_PROGRAM, "--no-open", "--folder", profile.folder()});
    return std::make_unique<ChildProcess>(arguments, environment());
}

void LiveDesktop::xdotool(std::vector<std::string> words) {
    words.insert(words.begin(), "xdotool");
    EXPECT_EQ(ChildProcess(words, environment()).waitForEnd(soon()), 0);
}

std::string LiveDesktop::findWindow(std::vector<std::string> words) {
    words.insert(words.begin(), {"xdotool", "search", "--sync", "--onlyvisible"});
    return ChildProcess(words, environment()).readLine(soon());
}

void LiveDesktop::clickAt(const std::string& window, int x, int y, int button) {
    xdotool({"mousemove", "--window", window, std::to_string(x), std::to_string(y), "click",
             std::to_string(button)});
}

}  // namespace velmora
