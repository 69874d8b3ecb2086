// The printable width in dots in portrait orientation, for the present settings.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/settings/portrait_dots.h"

namespace tavio {

// All 0 until InitDotArray has run, settings::kPortraitDots afterwards.
// Written by: dot_width_table.cpp
// Read by: dot_width_table.cpp
extern TAVIO_API settings::PortraitDotTable portrait_dot_array;

// The entry for the current stock and resolution, in dots, while the orientation is exactly "<PM>",
// 0 in any other orientation.
// Written by: dot_width_table.cpp
// Read by: dot_width_table.cpp, ../encoder/parse_bmp.cpp
extern TAVIO_API std::int32_t portrait_dots;  // initially 0

// Writes the whole table, then calls set_portrait_dots. Called by every opening of a session,
// before the transport is opened.
TAVIO_API void InitDotArray();

// Recomputes portrait_dots from the settings. Under "<PM>" with a resolution other than 200, 300
// and 600, or with a size_indicator that is no stock index, it deliberately does not change.
TAVIO_API void set_portrait_dots();

}  // namespace tavio
