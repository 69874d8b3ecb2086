// The options of how pages, pictures and words are made into dots.
#pragma once

#include "tools/tavio/command_spec.h"
#include "tools/tavio/settings.h"

namespace tavio::tool {

// --fit, --rotate, --align, --margin, --scaled, --dither, --threshold, --brightness, --contrast, --gamma,
// --tone, --classic, --face, --font
OptionSpecs drawingOptions(Settings& settings);

}  // namespace tavio::tool
