// An off-screen drawing surface at one pixel per point.
#pragma once

#include <cstdint>

#include "TavioIpadSDK/platform/picture.h"

namespace tavio::platform {

// Fully transparent at first. The origin is at the top left, and row numbers grow downwards.
class Canvas {
  public:
    // width, height: in pixels; a negative one counts as 0. Throws std::bad_alloc or
    // std::length_error if there is no memory for it.
    Canvas(std::int32_t width, std::int32_t height);

    // Puts the upright, opaque `picture` on the canvas, its top left pixel at column `left`, row
    // `top` (both may be negative or beyond the canvas). Parts outside the canvas are cut off.
    void placeOpaque(const Picture& picture, std::int32_t left, std::int32_t top);

    Picture takeSnapshot() && { return std::move(surface_); }

  private:
    Picture surface_;
};

}  // namespace tavio::platform
