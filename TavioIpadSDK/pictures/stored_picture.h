// A picture file that has been opened, and whose pixels are decoded as far as they are asked for.
//
//   decode_png.h, decode_jpeg.h, decode_bmp.h    each opens the files of its format
//       open_file.h                              opens a file of any of them
//       decode_picture.h                         reads all of one into memory
//       open_picture.h                           hands it out upright, a few rows at a time
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pictures {

// The pixels as they are stored, not turned upright. Used by one thread at a time.
class StoredPicture {
  public:
    StoredPicture(std::int32_t width, std::int32_t height, int orientation)
        : width_(width), height_(height), orientation_(orientation) {}
    virtual ~StoredPicture() = default;
    StoredPicture(const StoredPicture&) = delete;
    StoredPicture& operator=(const StoredPicture&) = delete;

    // As in Picture; width and height 1 or more, and no more than kMaxPixels together.
    std::int32_t width() const { return width_; }
    std::int32_t height() const { return height_; }
    int orientation() const { return orientation_; }

    // Whether the rows are only to be had all at once.
    virtual bool comesWhole() const { return false; }

    // Decodes the next rows: words as in Picture, as many rows as fit into `rows`, whose size is a
    // multiple of the width and goes no further than the last row. Where the picture comes whole,
    // `rows` has room for all of it, and is all 0 before. Returns from the last row only after the
    // file has been read to its end and found whole. Throws DamagedPicture (picture_rows.h) and
    // std::bad_alloc; after either, not to be called again.
    virtual void read(std::span<UInt32> rows) = 0;

  private:
    std::int32_t width_;
    std::int32_t height_;
    int orientation_;
};

// The picture, or why there is none: as DecodedPicture::why.
struct OpenedFile {
    std::unique_ptr<StoredPicture> picture;
    std::string why;
};

// All of a picture that nothing has been read of yet. Throws as StoredPicture::read.
Picture readWhole(StoredPicture& stored);

}  // namespace tavio::pictures
