// The options of the settings.
#pragma once

#include "tools/tavio/command_spec.h"
#include "tools/tavio/settings.h"

namespace tavio::tool {

// Those of a ticket as a whole: --path, --resolution, --stock, --orientation.
OptionSpecs ticketOptions(Settings& settings);

// These and the drawing options.
OptionSpecs settingOptions(Settings& settings);

}  // namespace tavio::tool
