// Linear codes: bars side by side that stay the same over many rows.
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/sharp/dots_view.h"

namespace tavio::sharp {

// The narrowest module below the limit of the upright linear codes in a row of the view, whose edges are
// given.
std::optional<double> moduleOfBars(const DotsView& view, std::int32_t row, const Edges& edges,
                                   double limit);

}  // namespace tavio::sharp
