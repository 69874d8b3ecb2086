// An opened picture file whose pixels are decoded on request.
//
//   decode_png.h, decode_jpeg.h, decode_bmp.h    each opens the files of its format
//       open_file.h                              opens a file of any of them
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

    // True if the rows can only be read all at once.
    virtual bool comesWhole() const { return false; }

    // Decodes the next rows into `rows`: pixels as in Picture. The size of `rows` is a multiple of
    // the width and no more than what is left of the picture. If the picture comes whole, `rows`
    // has room for all of it and is all 0 before. The call for the last row returns only after the
    // file has been read to its end and found whole. Throws DamagedPicture (picture_rows.h) and
    // std::bad_alloc; after either, do not call it again.
    virtual void read(std::span<UInt32> rows) = 0;

  private:
    std::int32_t width_;
    std::int32_t height_;
    int orientation_;
};

// The kind of reason why a file is no picture.
enum class Refusal : std::uint8_t {
    kDamaged,        // cut short, or against its format
    kUnknownFormat,  // no picture file, or of a kind that is not supported
    kTooLarge,       // more than kMaxPixels pixels
    kOutOfMemory,
};

// The picture, or the reason why there is none.
struct OpenedFile {
    std::unique_ptr<StoredPicture> picture;
    std::string why;  // a few words, lower case, without a full stop: "the PNG file is cut short"
    Refusal refusal = Refusal::kDamaged;
};

// Reads a whole picture, of which nothing has been read yet. Throws as StoredPicture::read.
Picture readWhole(StoredPicture& stored);

}  // namespace tavio::pictures
