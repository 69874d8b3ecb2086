// A part of a picture.
#pragma once

#include <cstdint>
#include <memory>

#include "TavioIpadSDK/sharp/grey_rows.h"

namespace tavio::sharp {

// A rectangle inside a picture.
struct Window {
    std::int64_t left = 0;
    std::int64_t top = 0;
    std::int32_t width = 0;   // 1 or more
    std::int32_t height = 0;  // 1 or more
};

// The rows of the part of `source` that the window shows. The last one comes only after `source` has
// been read to its end.
std::unique_ptr<GreyRows> croppedRows(std::unique_ptr<GreyRows> source, const Window& window);

}  // namespace tavio::sharp
