// Data Matrix: a solid L, and two sides whose modules are black and white in turn.
#pragma once

#include <cstdint>
#include <optional>

#include "TavioIpadSDK/sharp/dots_view.h"

namespace tavio::sharp {

// The narrowest module of the codes whose upright solid side crosses a row, whose edges are given, and
// not the row that was looked at before, whose edges are `before`.
std::optional<double> moduleOfDataMatrix(const DotsView& view, std::int32_t row, const Edges& edges,
                                         const Edges& before);

}  // namespace tavio::sharp
