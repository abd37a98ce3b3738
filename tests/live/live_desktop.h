#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/scratch_profile.h"
#include "tests/support/x_screen.h"

namespace velmora {

/// The real program in real windows, on a screen of its own with a window manager.
class LiveDesktop : public testing::Test {
protected:
    using ChildProcess = blackbox::ChildProcess;

    static ChildProcess::Clock::time_point soon();

    std::vector<std::string> environment() const;
    std::unique_ptr<ChildProcess> start(std::vector<std::string> arguments = {});

    /// Mouse and keys, as xdotool takes them.
    void xdotool(std::vector<std::string> words);
    /// Waits for a visible window that xdotool finds by these words.
    std::string findWindow(std::vector<std::string> words);
    /// Clicks with that button at a place of the window, in pixels from its corner.
    void clickAt(const std::string& window, int x, int y, int button = 1);

    blackbox::ScratchProfile profile;
    blackbox::XScreen screen{profile};
};

}  // namespace velmora
