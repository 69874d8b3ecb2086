// The printable widths in portrait orientation: fixed numbers, not inches times resolution.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "TavioIpadSDK/machine/export.h"
#include "TavioIpadSDK/settings/stock_table.h"

namespace tavio::settings {

// Widths in dots. Row: stock index. Column: 0 for 200, 1 for 300, 2 for 600 dots per inch.
using PortraitDotTable = std::array<std::array<std::int32_t, 3>, kStockCount>;

inline constexpr PortraitDotTable kPortraitDots{{
    {384, 576, 1184},
    {640, 960, 1920},
    {416, 608, 1232},
    {640, 960, 1920},
    {640, 960, 1920},
    {816, 1216, 2360},
    {190, 290, 590},
    {250, 380, 780},
    {1700, 2580, 5000},
}};
static_assert(kPortraitDots.back()[0] != 0, "each stock has its dot widths");

// The entry of a table; none for an index that is no stock or a resolution other than 200, 300 and
// 600.
TAVIO_API std::optional<std::int32_t> entryOf(const PortraitDotTable& table, std::int32_t stock,
                                              std::int32_t resolution);

// The fixed number for a stock index and a resolution; none as above.
//
//   portraitDotsOf(CONCERT, 300)  ->  576
TAVIO_API std::optional<std::int32_t> portraitDotsOf(std::int32_t stock, std::int32_t resolution);

}  // namespace tavio::settings
