// The options of how pages and pictures are made into dots.
#pragma once

#include "tools/tavio/command_spec.h"
#include "tools/tavio/settings.h"

namespace tavio::tool {

// --fit, --rotate, --align, --margin, --scaled, --dither, --threshold, --brightness, --contrast, --gamma,
// --tone, --classic
OptionSpecs drawingOptions(Settings& settings);

}  // namespace tavio::tool
