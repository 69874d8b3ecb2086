// Opening a picture file whose rows are decoded as they are asked for.
#pragma once

#include <memory>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture_rows.h"

namespace tavio::pictures {

// The rows of a picture file, or why there are none.
struct OpenedPicture {
    std::unique_ptr<PictureRows> rows;  // present: 1 x 1 pixel or more
    std::string why;                    // when absent, as in DecodedPicture
};

// Opens a PNG, JPEG or BMP file held in memory, recognised by content, and reads no more of it than
// is needed to know its size. The rows are those that upright(decodePicture(file)) has, exactly;
// they keep the file alive and may be asked for on another thread than the one that opened it.
//
//   OpenedPicture photo = openPicture(file);
//   if (!photo.rows) return photo.why;
//   for (auto rows = photo.rows->next(16); !rows.empty(); rows = photo.rows->next(16)) use(rows);
//
// What decodePicture refuses is refused here too, by the time the last row is asked for: where it
// shows only behind the header, PictureRows::next throws DamagedPicture with the same reason. The
// last row is given out only after the file has been read to its end and found whole. Asked again
// after that, next() throws again.
//
// Taken at once is memory for a few rows at a time and what the file's coding needs (a progressive
// JPEG: two bytes a sample); all pixels only where the rows of a turned, an interlaced or a
// run-length coded picture are asked for first. Never throws.
OpenedPicture openPicture(std::shared_ptr<const Bytes> file) noexcept;

}  // namespace tavio::pictures
