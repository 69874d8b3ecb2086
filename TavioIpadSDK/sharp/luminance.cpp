#include "TavioIpadSDK/sharp/luminance.h"

#include <algorithm>
#include <cassert>

namespace tavio::sharp {

void toGrey(std::span<const UInt32> pixels, std::span<Byte> greys) {
    assert(pixels.size() == greys.size());
    std::ranges::transform(pixels, greys.begin(), luminance);
}

}  // namespace tavio::sharp
