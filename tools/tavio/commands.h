// What the commands do.
#pragma once

#include "tools/tavio/console.h"
#include "tools/tavio/options.h"

namespace tavio::tool {

// Runs one command to its end. Throws Failure when it cannot be done; then no output file has
// appeared or been replaced, and no cut was sent.
void runCommand(const Options& options, Console& console);

}  // namespace tavio::tool
