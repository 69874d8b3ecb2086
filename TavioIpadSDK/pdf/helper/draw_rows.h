// A recorded page becomes rows of dots.
#pragma once

#include <functional>
#include <span>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pdf/helper/record_page.h"

namespace tavio::pdf_helper {

// Draws the page and hands on its rows, one byte a dot (sharp/settle_dots.h), from the top. Returns
// false if `send` did, after which it is not called again, or if the page cannot be drawn.
bool drawRows(const RecordedPage& page, const std::function<bool(std::span<const Byte>)>& send);

}  // namespace tavio::pdf_helper
