// Running the commands.
#pragma once

#include <string>

#include "tools/tavio/options.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// "logo store"
const char* nameOf(Command command);

// Runs one command and returns its exit status. Throws Failure if it fails; then nothing was sent, and
// no output file was created or replaced.
int runCommand(const Options& options, Report& report);

}  // namespace tavio::tool
