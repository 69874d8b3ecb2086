// Fuzzes the decoders of picture files: no crash, no partial picture, and the same pixels whole and
// by rows.

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "TavioIpadSDK/pictures/open_picture.h"
#include "TavioIpadSDK/pictures/upright.h"
#include "support/decode_picture.h"

namespace {

using namespace tavio;

void require(bool holds) {
    if (!holds) std::abort();
}

void requireRows(pictures::PictureRows& rows, const pictures::DecodedPicture& decoded) {
    const pictures::Picture expected =
        decoded.picture ? pictures::upright(*decoded.picture) : pictures::Picture();
    std::size_t came = 0;
    try {
        for (auto part = rows.next(3); !part.empty(); part = rows.next(3)) {
            came += part.size();
            if (!decoded.picture) continue;
            require(came <= expected.pixels.size());
            require(
                std::equal(part.begin(), part.end(), expected.pixels.data() + came - part.size()));
        }
        require(decoded.picture && came == expected.pixels.size());
    } catch (const pictures::DamagedPicture& damage) {
        require(damage.what() == decoded.why);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto decoded = pictures::decodePicture({data, size});
    require(decoded.picture.has_value() == decoded.why.empty());
    if (decoded.picture) {
        const pictures::Picture& picture = *decoded.picture;
        const auto pixels =
            static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
        require(pixels != 0 && pixels == picture.pixels.size());
        require(picture.orientation >= 1 && picture.orientation <= 8);
    }
    const auto opened = pictures::openPicture(std::make_shared<const Bytes>(data, data + size));
    if (opened.rows) {
        requireRows(*opened.rows, decoded);
    } else {
        require(opened.why == decoded.why);
    }
    return 0;
}
