// How dark a grey value is printed.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/options.h"

namespace tavio::sharp {

// The grey value to dither so that paper on which each black dot is a disc 1.2 dots wide looks as light
// as `value`. Found by measuring what our error diffusion prints: docs/halftone.md. It is within 1.5 % of
// the measured curve, and can be computed for many values at once.
constexpr Byte balancedGrey(Byte value) {
    const int more = std::min({value / 4, 23, 44 - value / 8});
    return static_cast<Byte>(std::max(value - 13, 0) + more);
}

// The same for dots that grow as much as this step of Tone::dotGain says, 0 to kMaxDotGain. Never falls
// when `value` grows.
Byte lightened(Byte value, std::int32_t dotGain);

// table[v] is the share of white dots, times 255, that grey value v is printed with. Grows from 0 to
// 255 and never falls. Black and white stay what they are, unless brightness or contrast say otherwise.
using ToneTable = std::array<Byte, 256>;
ToneTable toneTable(const Tone& tone);

}  // namespace tavio::sharp
