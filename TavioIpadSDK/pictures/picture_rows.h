// A picture whose rows come one after the other, so that it need never be in memory as a whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pictures {

// An upright picture, its top row first. Its rows are asked for once, from one thread at a time.
class PictureRows {
  public:
    PictureRows() = default;
    virtual ~PictureRows() = default;
    PictureRows(const PictureRows&) = delete;
    PictureRows& operator=(const PictureRows&) = delete;

    // Size of the upright picture in pixels; both 1 or more, or both 0.
    virtual std::int32_t width() const = 0;
    virtual std::int32_t height() const = 0;

    // The next rows, as many as are at hand, at least one and at most `most` (1 or more): words as
    // in Picture, row behind row, width() each. They stay as they are until the next call. Empty
    // when all rows have been delivered. Throws DamagedPicture when the rest cannot be had, and
    // std::bad_alloc; after either, no more rows come.
    virtual std::span<const UInt32> next(std::int32_t most) = 0;

    // The same, written to `target`, room for one row or more; returns how many words these rows
    // are. Saves a copy where the rows are made only now.
    virtual std::size_t nextInto(std::span<UInt32> target);
};

// The picture turned out to be cut short or damaged after some of its rows had been delivered.
struct DamagedPicture : std::runtime_error {
    using std::runtime_error::runtime_error;  // what(): as DecodedPicture::why
};

// The rows of a picture in memory, turned upright. Those of a picture that stands upright already
// are not copied. The picture must outlive the rows, unchanged.
std::unique_ptr<PictureRows> rowsOf(const Picture& picture);

}  // namespace tavio::pictures
