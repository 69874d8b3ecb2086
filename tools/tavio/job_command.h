// Commands that make up a job, and scripts of them.
#pragma once

#include "tools/tavio/options.h"
#include "tools/tavio/report.h"

namespace tavio::tool {

// Composes, encodes and delivers a job; returns the exit status. Throws Failure if nothing was sent.
int runJob(const Options& options, Report& report);

}  // namespace tavio::tool
