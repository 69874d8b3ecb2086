#include "TavioIpadSDK/settings/dot_width_table.h"

#include <cstddef>
#include <optional>

#include "TavioIpadSDK/settings/settings.h"

namespace tavio {
namespace {

using Row = std::array<std::int32_t, 3>;
using Table = std::array<Row, settings::kStockCount>;

// A row for each stock index, with the dots at 200, 300 and 600 dots per inch.
constexpr auto kPortraitDots = std::to_array<Row>({
    {384, 576, 1184},
    {640, 960, 1920},
    {416, 608, 1232},
    {640, 960, 1920},
    {640, 960, 1920},
    {816, 1216, 2360},
    {190, 290, 590},
    {250, 380, 780},
    {1700, 2580, 5000},
});
static_assert(kPortraitDots.size() == settings::kStocks.size(), "each stock has its dot widths");

std::optional<std::size_t> columnOf(std::int32_t resolution) {
    switch (resolution) {
        case 200:
            return 0;
        case 300:
            return 1;
        case 600:
            return 2;
        default:
            return std::nullopt;
    }
}

std::optional<std::int32_t> entryOf(const Table& table, std::int32_t stock,
                                    std::int32_t resolution) {
    const std::optional<std::size_t> column = columnOf(resolution);
    const auto row = static_cast<std::size_t>(stock);  // a negative one becomes too large
    if (!column || row >= table.size()) return std::nullopt;
    return table[row][*column];
}

}  // namespace

constinit Table portrait_dot_array{};
constinit std::int32_t portrait_dots = 0;

void InitDotArray() {
    portrait_dot_array = kPortraitDots;
    set_portrait_dots();
}

void set_portrait_dots() {
    if (PrinterOrientation != "<PM>") {
        portrait_dots = 0;
        return;
    }
    const auto entry = entryOf(portrait_dot_array, size_indicator, PrinterResolution);
    portrait_dots = entry.value_or(portrait_dots);
}

std::optional<std::int32_t> settings::portraitDotsOf(std::int32_t stock, std::int32_t resolution) {
    return entryOf(kPortraitDots, stock, resolution);
}

}  // namespace tavio
