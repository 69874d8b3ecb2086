#include "TavioIpadSDK/platform/decode_picture.h"

#include <exception>

#include "TavioIpadSDK/platform/decode_bmp.h"
#include "TavioIpadSDK/platform/decode_jpeg.h"
#include "TavioIpadSDK/platform/decode_png.h"

namespace tavio::platform {

DecodedPicture decodePicture(std::span<const Byte> file) noexcept {
    try {
        if (looksLikePng(file)) return decodePng(file);
        if (looksLikeJpeg(file)) return decodeJpeg(file);
        if (looksLikeBmp(file)) return decodeBmp(file);
        return {std::nullopt, "the file is neither a PNG nor a JPEG nor a BMP"};
    } catch (const std::exception&) {
        // Short enough to need no memory of its own.
        return {std::nullopt, "out of memory"};
    }
}

}  // namespace tavio::platform
