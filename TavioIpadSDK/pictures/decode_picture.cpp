#include "TavioIpadSDK/platform/decode_picture.h"

#include <exception>
#include <utility>

#include "TavioIpadSDK/platform/picture_rows.h"
#include "TavioIpadSDK/platform/stored_picture.h"

namespace tavio::platform {
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

}  // namespace tavio::platform
