// A picture's rows cut into strips, each with the last row of the strip above.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <span>
#include <vector>

#include "TavioIpadSDK/imaging/diffuse_strip.h"
#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::imaging {

// Strip i of the picture leaves its last row in place i modulo the number of places, after strip i
// - places is finished. Two places are enough even for two strips in work at the same time: a strip
// overwrites a column of its place only after the one above it has read past it.
class StripChain {
  public:
    // `width`: 0 or more. `places`: 2 or more. Throws std::bad_alloc.
    StripChain(std::int32_t width, std::size_t places);

    // The next rows of the picture, with the entries that they become (as ErrorDiffusion::convert
    // takes both), as strips of at most `maxRows` (1 or more) rows. Throws std::bad_alloc.
    std::vector<DitherStrip> cut(std::span<const UInt32> pixels, std::span<Byte> entries,
                                 std::int32_t maxRows);

  private:
    // Two threads must not share a cache line.
    struct alignas(128) Place {
        explicit Place(std::int32_t width) : row(width) {}
        LastRow row;
        ColumnsDone done;
    };

    Place& placeOf(std::int64_t strip);

    std::int32_t width_;
    std::int64_t strips_ = 0;  // cut so far
    std::list<Place> list_;    // places do not move
    std::vector<Place*> places_;
};

}  // namespace tavio::imaging
