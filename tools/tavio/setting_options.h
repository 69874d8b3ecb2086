// The options of the settings.
#pragma once

#include "tools/tavio/command_spec.h"
#include "tools/tavio/settings.h"

namespace tavio::tool {

// All of them: --path, --resolution, --scaled, --threshold, --stock, --orientation.
OptionSpecs settingOptions(Settings& settings);

// Those of a ticket as a whole: all but --scaled and --threshold.
OptionSpecs ticketOptions(Settings& settings);

}  // namespace tavio::tool
