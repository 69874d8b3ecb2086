// A picture's stored pixels in grey, decoded on request.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::sharp {

// The pixels as they are stored, not turned. Used by one thread at a time.
class GreySource {
  public:
    GreySource() = default;
    virtual ~GreySource() = default;
    GreySource(const GreySource&) = delete;
    GreySource& operator=(const GreySource&) = delete;

    // As in StoredPicture.
    virtual std::int32_t width() const = 0;
    virtual std::int32_t height() const = 0;
    virtual int orientation() const = 0;
    virtual bool comesWhole() const { return false; }

    // Before anything is read: permits the picture to be decoded smaller, by a whole number that
    // divides both sides, as long as neither gets smaller than this.
    virtual void mayShrinkTo(std::int64_t /*width*/, std::int64_t /*height*/) {}

    // False if the picture is a photo by its format: then it is never counted as one of few greys.
    virtual bool mayHaveFewGreys() const { return true; }

    // Decodes the next rows, one byte a pixel, as StoredPicture::read.
    virtual void read(std::span<Byte> rows) = 0;
};

struct OpenedGrey {
    std::unique_ptr<GreySource> source;
    std::string why;  // if the source is absent: as in pictures::OpenedFile
    pictures::Refusal refusal = pictures::Refusal::kDamaged;
};

// Opens a PNG, JPEG or BMP file. Nothing is copied: the file must outlive the source. Throws
// std::bad_alloc.
OpenedGrey openGrey(std::span<const Byte> file);

// The pixels of a picture in memory, which must outlive the source.
std::unique_ptr<GreySource> greyOf(const pictures::Picture& picture);

}  // namespace tavio::sharp
