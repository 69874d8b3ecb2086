// The printable width in dots in portrait orientation: a fixed number per stock and resolution, not
// inches times resolution.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/settings/stock_table.h"

namespace tavio {

// Widths in dots. Row: stock index. Column: 0 for 200, 1 for 300, 2 for 600 dots per inch. All 0
// until InitDotArray has run, constant afterwards.
// Written by: dot_width_table.cpp
// Read by: dot_width_table.cpp
extern TAVIO_API std::array<std::array<std::int32_t, 3>, settings::kStockCount> portrait_dot_array;

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

namespace tavio::settings {

// The fixed number for a stock index and a resolution, whether or not the table has been filled;
// none for any other index or a resolution other than 200, 300 and 600.
//
//   portraitDotsOf(CONCERT, 300)  ->  576
TAVIO_API std::optional<std::int32_t> portraitDotsOf(std::int32_t stock, std::int32_t resolution);

}  // namespace tavio::settings
