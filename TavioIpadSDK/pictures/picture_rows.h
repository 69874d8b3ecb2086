// A picture that delivers its rows one after the other, so that it need not be in memory as a
// whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pictures {

// An upright picture, its top row first. Each row is delivered once. Used by one thread at a time.
class PictureRows {
  public:
    PictureRows() = default;
    virtual ~PictureRows() = default;
    PictureRows(const PictureRows&) = delete;
    PictureRows& operator=(const PictureRows&) = delete;

    // Size of the upright picture in pixels; both 1 or more, or both 0.
    virtual std::int32_t width() const = 0;
    virtual std::int32_t height() const = 0;

    // The next rows that are ready, at least one and at most `maxRows` (1 or more): pixels as in
    // Picture, row after row, width() each. They stay valid until the next call. Empty after the
    // last row. Throws DamagedPicture if the rest cannot be read, and std::bad_alloc; after either,
    // no more rows come.
    virtual std::span<const UInt32> next(std::int32_t maxRows) = 0;

    // The same, written to `target`, which has room for one row or more; returns the number of
    // pixels. Saves a copy where the rows are made on request.
    virtual std::size_t nextInto(std::span<UInt32> target);
};

// Thrown if the picture is cut short or damaged, perhaps after some of its rows have been
// delivered.
struct DamagedPicture : std::runtime_error {
    using std::runtime_error::runtime_error;  // what(): as OpenedFile::why
};

// Reads all rows that are left, to learn whether they can be read. Throws as PictureRows::next().
void readToEnd(PictureRows& rows);

// The rows of a picture in memory, turned upright. If the picture is upright already, nothing is
// copied. The picture must outlive the rows, unchanged.
std::unique_ptr<PictureRows> rowsOf(const Picture& picture);

}  // namespace tavio::pictures
