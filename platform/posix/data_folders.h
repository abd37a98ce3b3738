#pragma once

#include <optional>
#include <string>

namespace velmora {

/// Where the installed data lies: beside the program if it is installed, else where it was built from.
std::string installedDataFolder();

/// Makes the application folder ready: one that is missing or empty is filled with the installed data and a
/// `platform.conf` of defaults; to one that holds anything, nothing is added. Gives its absolute path, or
/// nothing after a sentence on standard error if there can be no such folder.
std::optional<std::string> prepareApplicationFolder(const std::string& chosen, const std::string& installed);

/// The folder that holds the character packages for this application folder: its own if the package is there,
/// else the installed one.
std::string charactersFolder(const std::string& applicationFolder, const std::string& installed,
                             const std::string& package);

}  // namespace velmora
