// A picture in one grey channel that delivers its rows one after the other.
#pragma once

#include <cstdint>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::sharp {

// Grey values from 0, black, to 255, white. These two are solid: halftoning makes them black and white
// dots whatever is beside them. Used by one thread at a time.
class GreyRows {
  public:
    GreyRows() = default;
    virtual ~GreyRows() = default;
    GreyRows(const GreyRows&) = delete;
    GreyRows& operator=(const GreyRows&) = delete;

    // Size of the upright picture; both 1 or more.
    virtual std::int32_t width() const = 0;
    virtual std::int32_t height() const = 0;

    // The next rows, from the top, that are ready: at least one and at most `maxRows` (1 or more),
    // row after row, width() bytes each. They stay valid until the next call. Empty after the last
    // row. Throws pictures::DamagedPicture if the rest cannot be read, and std::bad_alloc; after
    // either, no more rows come.
    virtual std::span<const Byte> next(std::int32_t maxRows) = 0;
};

}  // namespace tavio::sharp
