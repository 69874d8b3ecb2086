#include "tavio/printing/turned_canvas.h"

#include <cstdint>

namespace tavio::printing {

TurnedCanvas::TurnedCanvas(Size size, int quarterTurns)
    : size_(size),
      quarterTurns_(quarterTurns),
      dots_(quarterTurns % 2 == 0 ? sharp::whiteDots(size.width, size.height)
                                  : sharp::whiteDots(size.height, size.width)) {}

void TurnedCanvas::draw(const sharp::Dots& picture, std::int32_t left, std::int32_t top) {
    for (std::int32_t row = 0; row < picture.height; ++row)
        for (std::int32_t column = 0; column < picture.width; ++column)
            if (picture.isBlack(column, row)) blacken({left + column, top + row, 1, 1});
}

sharp::DotArea TurnedCanvas::turned(const sharp::DotArea& area) const {
    const std::int32_t fromRight = size_.width - area.left - area.width;
    const std::int32_t fromBottom = size_.height - area.top - area.height;
    switch (quarterTurns_) {
        case 1:
            return {fromBottom, area.left, area.height, area.width};
        case 2:
            return {fromRight, fromBottom, area.width, area.height};
        case 3:
            return {area.top, fromRight, area.height, area.width};
        default:
            return area;
    }
}

}  // namespace tavio::printing
