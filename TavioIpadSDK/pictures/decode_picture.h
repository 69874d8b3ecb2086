// Decoding picture files.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pictures {

// A decoded picture, or the reason why there is none.
struct DecodedPicture {
    std::optional<Picture> picture;  // present: 1 x 1 pixel or more
    std::string why;                 // if absent: a few words, lower case, without a full stop,
                                     // e.g. "the PNG file is cut short"
};

// Decodes a whole PNG, JPEG or BMP file held in memory. The format is recognised by content, never
// by name. The EXIF orientation (in a JPEG, also after other APP1 blocks; in a PNG's eXIf) becomes
// Picture::orientation; the pixels stay as stored. A file that is truncated, damaged, of another
// format or has more than kMaxPixels pixels gives no picture at all. Never throws.
DecodedPicture decodePicture(std::span<const Byte> file) noexcept;

}  // namespace tavio::pictures
