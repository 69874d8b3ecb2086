// The route that a document takes, by the extension of its name.
#pragma once

#include <string_view>

namespace tavio::intake {

enum class Route {
    kNone,   // refused
    kText,   // sent unchanged
    kPage,   // page 1 of a PDF document
    kPhoto,  // a picture of the photo library
};

// The route of an extension (without its dot). Only the all-capital and all-small spellings of TXT,
// PDF, PNG, JPG, JPEG and BMP have one; a mixed-case spelling is refused on purpose.
Route routeOf(std::string_view extension);

}  // namespace tavio::intake
