// An opened picture file whose pixels are decoded in grey on request.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

// The pixels as they are stored, not turned upright. Used by one thread at a time.
class StoredGrey {
  public:
    StoredGrey() = default;
    virtual ~StoredGrey() = default;
    StoredGrey(const StoredGrey&) = delete;
    StoredGrey& operator=(const StoredGrey&) = delete;

    // As in StoredPicture.
    virtual std::int32_t width() const = 0;
    virtual std::int32_t height() const = 0;
    virtual int orientation() const = 0;
    virtual bool comesWhole() const { return false; }

    // Before anything is read: permits the picture to be decoded smaller, by a whole number that
    // divides both sides, as long as neither gets smaller than this.
    virtual void mayShrinkTo(std::int64_t /*width*/, std::int64_t /*height*/) {}

    // True if the format is made for photos.
    virtual bool isPhoto() const { return false; }

    // Decodes the next rows, one byte a pixel from 0, black, to 255, white; else as
    // StoredPicture::read.
    virtual void read(std::span<Byte> rows) = 0;
};

struct OpenedGrey {
    std::unique_ptr<StoredGrey> source;
    std::string why;  // if the source is absent: as in OpenedFile
    Refusal refusal = Refusal::kDamaged;
};

}  // namespace tavio::pictures
