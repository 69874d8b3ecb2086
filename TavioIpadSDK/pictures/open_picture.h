// Opening a picture file whose rows are decoded on request.
#pragma once

#include <memory>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

// The rows of a picture file, or the reason why there are none.
struct OpenedPicture {
    std::unique_ptr<PictureRows> rows;  // present: 1 x 1 pixel or more
    std::string why;                    // if absent: as in OpenedFile (stored_picture.h)
    Refusal refusal = Refusal::kDamaged;
};

// Opens a PNG, JPEG or BMP file held in memory, recognised by content, and reads no more of it than
// is needed to know its size. The rows are those of the upright picture (upright.h), exactly;
// they keep the file alive and may be asked for on another thread than the one that opened it.
//
//   OpenedPicture photo = openPicture(file);
//   if (!photo.rows) return photo.why;
//   for (auto rows = photo.rows->next(16); !rows.empty(); rows = photo.rows->next(16)) use(rows);
//
// A file that is truncated, damaged, of another format or has more than kMaxPixels pixels is
// refused: at once, or, if the damage lies after the header, by PictureRows::next, which throws
// DamagedPicture with the reason. The last row
// is delivered only after the file has been read to its end and found whole. After a failure every
// further next() throws again.
//
// It takes memory for a few rows and for the file's coding (a progressive JPEG: two bytes a
// sample). Only a turned, an interlaced or a run-length coded picture takes memory for all pixels,
// when its first row is asked for. Never throws.
OpenedPicture openPicture(std::shared_ptr<const Bytes> file) noexcept;

}  // namespace tavio::pictures
