// Dots that are drawn upright and come out turned by quarters.
#pragma once

#include <utility>

#include "TavioIpadSDK/sharp/blacken.h"
#include "TavioIpadSDK/sharp/dots.h"
#include "tavio/printing/place.h"

namespace tavio::printing {

class TurnedCanvas {
  public:
    // The size before turning. quarterTurns: clockwise, 0 to 3. Throws std::bad_alloc.
    TurnedCanvas(Size size, int quarterTurns);

    // The area, as it lies before turning, must be inside.
    void blacken(const sharp::DotArea& area) { sharp::blacken(dots_, turned(area)); }

    // All black dots of a picture whose top left corner lies there. It must be inside.
    void draw(const sharp::Dots& picture, std::int32_t left, std::int32_t top);

    sharp::Dots take() && { return std::move(dots_); }

  private:
    sharp::DotArea turned(const sharp::DotArea& area) const;

    Size size_;
    int quarterTurns_;
    sharp::Dots dots_;
};

}  // namespace tavio::printing
