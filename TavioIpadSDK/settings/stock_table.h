// The ticket stocks and their sizes. A stock index (settings.h) is a place in this table, from 0
// on.
#pragma once

#include <array>
#include <cstdint>

#include "TavioIpadSDK/machine/export.h"

namespace tavio::settings {

struct TAVIO_API StockSize {
    double width;   // inches
    double height;  // inches

    bool operator==(const StockSize&) const = default;
};

struct TAVIO_API Stock {
    const char* name;     // "" if the stock has none
    StockSize landscape;  // when the orientation is exactly "<LM>"
    StockSize otherwise;  // for any other orientation text
};

// CINEMA is deliberately higher than wide in landscape.
inline constexpr auto kStocks = std::to_array<Stock>({
    {"CONCERT", {5.5, 2.0}, {2.0, 5.5}},
    {"CINEMA", {2.0, 3.25}, {3.25, 2.0}},
    {"CREDITCARD", {3.37, 2.13}, {2.13, 3.37}},
    {"RECEIPT", {8.0, 3.25}, {3.25, 8.0}},
    {"", {6.0, 3.25}, {3.25, 6.0}},
    {"", {6.0, 4.0}, {4.0, 6.0}},
    {"", {11.0, 1.0}, {1.0, 11.0}},
    {"", {11.0, 1.328}, {1.328, 11.0}},
    {"", {11.0, 8.5}, {8.5, 11.0}},
});

// The size of a stock as it lies in the orientation.
constexpr StockSize sizeOf(const Stock& stock, bool isLandscape) {
    return isLandscape ? stock.landscape : stock.otherwise;
}

inline constexpr auto kStockCount = static_cast<std::int32_t>(kStocks.size());

}  // namespace tavio::settings
