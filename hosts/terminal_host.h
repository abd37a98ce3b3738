#pragma once

#include "hosts/machine.h"
#include "hosts/options.h"

namespace velmora {

/// Runs the program in the terminal until it ends; gives the exit status. The `QCoreApplication` is there
/// already.
int runInTerminal(const Options& options, Folders folders);

}  // namespace velmora
