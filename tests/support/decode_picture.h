// Decoding a whole picture file at once: tests compare the pictures that come row by row with it.
#pragma once

#include <exception>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/open_file.h"
#include "TavioIpadSDK/pictures/picture.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {

// A decoded picture, or the reason why there is none.
struct DecodedPicture {
    std::optional<Picture> picture;  // present: 1 x 1 pixel or more
    std::string why;                 // if absent: as OpenedFile::why
};

// Decodes a whole PNG, JPEG or BMP file held in memory. The EXIF orientation becomes
// Picture::orientation; the pixels stay as stored. A file that is truncated, damaged, of another
// format or has more than kMaxPixels pixels gives no picture at all.
inline DecodedPicture decodePicture(std::span<const Byte> file) {
    try {
        OpenedFile opened = openFile(file);
        if (!opened.picture) return {std::nullopt, std::move(opened.why)};
        return {readWhole(*opened.picture), {}};
    } catch (const DamagedPicture& damage) {
        return {std::nullopt, damage.what()};
    } catch (const std::exception&) {
        return {std::nullopt, "out of memory"};
    }
}

}  // namespace tavio::pictures
