// Running the commands.
#pragma once

#include "tools/tavio/console.h"
#include "tools/tavio/options.h"

namespace tavio::tool {

// Runs one command. Throws Failure if it fails; then no output file was created or replaced, and no
// cut was sent.
void runCommand(const Options& options, Console& console);

}  // namespace tavio::tool
