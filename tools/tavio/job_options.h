// The options of commands that send something: where a job goes, and how.
#pragma once

#include "tools/tavio/command_spec.h"

namespace tavio::tool {

// --to, --printer, --timeout, --trace
OptionSpecs destinationOptions(Options& options);

// --ready, --confirm
OptionSpecs demandOptions(Options& options);

}  // namespace tavio::tool
