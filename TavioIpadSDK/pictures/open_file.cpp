#include "TavioIpadSDK/pictures/open_file.h"

#include "TavioIpadSDK/pictures/decode_bmp.h"
#include "TavioIpadSDK/pictures/decode_jpeg.h"
#include "TavioIpadSDK/pictures/decode_png.h"

namespace tavio::pictures {

OpenedFile openFile(std::span<const Byte> file) {
    if (looksLikePng(file)) return openPng(file);
    if (looksLikeJpeg(file)) return openJpeg(file);
    if (looksLikeBmp(file)) return openBmp(file);
    return {nullptr, "the file is neither a PNG nor a JPEG nor a BMP", Refusal::kUnknownFormat};
}

}  // namespace tavio::pictures
