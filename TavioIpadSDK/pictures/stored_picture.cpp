#include "TavioIpadSDK/platform/stored_picture.h"

#include <cstddef>
#include <vector>

#include "TavioIpadSDK/platform/decode_bmp.h"
#include "TavioIpadSDK/platform/decode_jpeg.h"
#include "TavioIpadSDK/platform/decode_png.h"

namespace tavio::platform {

OpenedFile openFile(std::span<const Byte> file) {
    if (looksLikePng(file)) return openPng(file);
    if (looksLikeJpeg(file)) return openJpeg(file);
    if (looksLikeBmp(file)) return openBmp(file);
    return {nullptr, "the file is neither a PNG nor a JPEG nor a BMP"};
}

Picture readWhole(StoredPicture& stored) {
    const auto count =
        static_cast<std::size_t>(stored.width()) * static_cast<std::size_t>(stored.height());
    Picture picture{stored.width(), stored.height(), std::vector<UInt32>(count),
                    stored.orientation()};
    stored.read(picture.pixels);
    return picture;
}

}  // namespace tavio::platform
