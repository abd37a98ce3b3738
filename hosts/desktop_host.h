#pragma once

#include "hosts/machine.h"
#include "hosts/options.h"

namespace velmora {

/// Runs the program in windows until it ends; gives the exit status. The `QApplication` is there already.
int runOnDesktop(const Options& options, Folders folders);

}  // namespace velmora
