// Picture files: never a crash, and what is decoded is whole.

#include <cstdlib>

#include "TavioIpadSDK/platform/decode_picture.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto decoded = tavio::platform::decodePicture({data, size});
    if (!decoded.picture) return decoded.why.empty() ? (std::abort(), 0) : 0;
    const tavio::platform::Picture& picture = *decoded.picture;
    const auto pixels =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    if (pixels == 0 || pixels != picture.pixels.size()) std::abort();
    if (picture.orientation < 1 || picture.orientation > 8) std::abort();
    return 0;
}
