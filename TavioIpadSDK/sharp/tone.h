// How dark a grey value is printed.
#pragma once

#include <array>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/sharp/options.h"

namespace tavio::sharp {

// table[v] is the share of white dots, times 255, that grey value v is printed with. Grows from 0 to
// 255 and never falls. Black and white stay what they are, unless brightness or contrast say otherwise.
using ToneTable = std::array<Byte, 256>;
ToneTable toneTable(const Tone& tone);

}  // namespace tavio::sharp
