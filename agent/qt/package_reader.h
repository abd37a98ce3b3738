#pragma once

#include <QByteArray>
#include <optional>
#include <string>
#include <variant>

#include "agent/rig.h"

namespace agent {

/// A character as it lies on the disk: its rig, and its art as one SVG document.
struct Package {
    Rig rig;
    QByteArray art;
};

/// A package, or one sentence that says why there is none.
using PackageResult = std::variant<Package, std::string>;

/// Reads the package `name` below `root`. A name that is not plainly that of a folder ("..", "a/b") is
/// refused, and so is whatever is missing, broken, or beyond what a figure can need.
PackageResult readPackage(const std::string& root, const std::string& name);

}  // namespace agent
