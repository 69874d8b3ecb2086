// Where on the ticket the dots of a picture are printed.
#pragma once

#include <cstdint>

namespace tavio::sharp {

// The printer's row and column of the picture's top left dot. In landscape the picture's rows are the
// printer's rows and its columns the printer's columns. In portrait the picture's columns run along
// the printer's rows, from `row` downwards to 0, and its rows along the printer's columns.
struct DotsPlace {
    bool isLandscape = true;
    std::int32_t row = 0;
    std::int32_t column = 0;
};

// The largest printer row or column that a command names: five digits.
inline constexpr std::int32_t kMaxPosition = 99'999;

struct PrinterPosition {
    std::int32_t row = 0;
    std::int32_t column = 0;
};

// Where the printer prints this dot of the picture.
constexpr PrinterPosition positionOf(const DotsPlace& place, std::int32_t column,
                                     std::int32_t row) {
    if (place.isLandscape) return {place.row + row, place.column + column};
    return {place.row - column, place.column + row};
}

}  // namespace tavio::sharp
