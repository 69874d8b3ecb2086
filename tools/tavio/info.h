// What a document is, and what printing it would lose.
#pragma once

#include "tools/tavio/options.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// Tells it; returns the exit status. Throws Failure if the document cannot be printed.
int tellInfo(const Options& options, Report& report);

}  // namespace tavio::tool
