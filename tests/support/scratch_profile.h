#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

namespace velmora::blackbox {

/// An application folder and a home of its own for one test: a user with 15 settings, a silent voice, no
/// mail to check. Removed with the object.
class ScratchProfile {
public:
    /// Throws std::filesystem::filesystem_error if the folder cannot be made.
    ScratchProfile();

    /// The application folder.
    std::filesystem::path folder() const { return root_.file("application"); }

    /// The environment of a program that must see nothing of the user's own data, screen or sound; `more` is
    /// added.
    std::vector<std::string> environment(const std::vector<std::string>& more = {}) const;

private:
    ScratchFolder root_;
};

}  // namespace velmora::blackbox
