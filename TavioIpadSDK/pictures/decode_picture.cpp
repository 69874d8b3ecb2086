#include "TavioIpadSDK/pictures/decode_picture.h"

#include <exception>
#include <utility>

#include "TavioIpadSDK/pictures/open_file.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/pictures/stored_picture.h"

namespace tavio::pictures {
namespace {

DecodedPicture decode(std::span<const Byte> file) {
    OpenedFile opened = openFile(file);
    if (!opened.picture) return {std::nullopt, std::move(opened.why)};
    try {
        return {readWhole(*opened.picture), {}};
    } catch (const DamagedPicture& damage) {
        return {std::nullopt, damage.what()};
    }
}

}  // namespace

DecodedPicture decodePicture(std::span<const Byte> file) noexcept {
    try {
        return decode(file);
    } catch (const std::exception&) {
        // Short enough to need no memory of its own.
        return {std::nullopt, "out of memory"};
    }
}

}  // namespace tavio::pictures
