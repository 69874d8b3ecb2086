// How dark a grey value is printed.
#pragma once

#include <array>

#include "TavioIpadSDK/machine/bytes.h"

namespace tavio::sharp {

struct Tone {
    double brightness = 0;  // -100 (all black) to 100 (all white); moves every value
    double contrast = 0;    // -100 (all grey) to 100 (only black and white); turns about mid-grey
    double gamma = 1;       // 0.1 to 10; more than 1 makes the middle lighter

    // Thermal dots are larger than their share of the paper, so that greys print darker than they
    // are. If true, greys are made lighter by as much.
    bool balancesDotGain = true;

    bool operator==(const Tone&) const = default;
};

// table[v] is the share of white dots, times 255, that grey value v is printed with. Grows from 0 to
// 255 and never falls. Black and white stay what they are, unless brightness or contrast say otherwise.
// Values outside the ranges above are taken as the nearest inside.
using ToneTable = std::array<Byte, 256>;
ToneTable toneTable(const Tone& tone);

}  // namespace tavio::sharp
